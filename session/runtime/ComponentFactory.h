#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tvrx {

// An outside component the library makes afresh for each use, as the pharmacy's own system
// did (the plan directory of an insurance lookup, a page document, a screening engine). The
// session holds one factory per kind of component: a host sets its own to give the library
// its component, and a test sets a scripted one to see what the library does with it.
// Without one the library makes the component it ships. The components are shared, so that
// a test may keep the one it handed out and look at it after the library is done.
template <class Component>
class ComponentFactory {
public:
    using Make = std::function<std::shared_ptr<Component>()>;

    // The host's factory; an empty one brings back the shipped component.
    void set(Make make) { make_ = std::move(make); }
    bool isSet() const { return static_cast<bool>(make_); }

    // A new component: the host's, or the shipped one. Null only when the host's factory
    // gives none.
    template <class Shipped>
    std::shared_ptr<Component> make() const {
        if (make_) return make_();
        return std::make_shared<Shipped>();
    }

    // A new component of a kind the library does not ship: null when no host installed one.
    std::shared_ptr<Component> make() const { return make_ ? make_() : nullptr; }

private:
    Make make_;
};

}  // namespace tvrx
