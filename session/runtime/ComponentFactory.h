#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tvrx {

// An outside component the library makes afresh for each use, as the pharmacy's own system
// did (the plan directory of an insurance lookup is one). The session holds one factory
// per kind of component: a host sets its own to give the library its component, and a
// test sets a scripted one to see what the library does with it. Without one the library
// makes the component it ships.
template <class Component>
class ComponentFactory {
public:
    using Make = std::function<std::unique_ptr<Component>()>;

    // The host's factory; an empty one brings back the shipped component.
    void set(Make make) { make_ = std::move(make); }
    bool isSet() const { return static_cast<bool>(make_); }

    // A new component: the host's, or the shipped one. Null only when the host's factory
    // gives none.
    template <class Shipped>
    std::unique_ptr<Component> make() const {
        if (make_) return make_();
        return std::make_unique<Shipped>();
    }

private:
    Make make_;
};

}  // namespace tvrx
