#pragma once

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tvrx {

// An ordered collection of shared objects, each optionally under a text key, reached by
// 1-based position or by key (letter case ignored, as the host platform's collections
// do). The prescriptions of a claim, the rejects and DUR records of a response and the
// responses of a file are all held in one of these.
//
// Failures are the platform's: a position out of range is 9, an unknown key 5, a key
// given twice 457.
template <class T>
class KeyedCollection {
public:
    using Pointer = std::shared_ptr<T>;

private:
    struct Entry {
        Pointer item;
        QString key;
    };

public:
    // Adds the item at the end; an empty key adds it without one.
    void Add(Pointer item, const QString& key = {}) {
        if (!key.isEmpty() && indexOfKey(key)) fail(err::DuplicateKey);
        entries_.push_back({std::move(item), key});
    }

    Pointer Item(int position) const { return entries_.at(indexOfPosition(position)).item; }
    Pointer Item(const QString& key) const { return entries_.at(requireKey(key)).item; }

    int Count() const { return static_cast<int>(entries_.size()); }

    void Remove(int position) { entries_.erase(entries_.begin() + indexOfPosition(position)); }
    void Remove(const QString& key) { entries_.erase(entries_.begin() + requireKey(key)); }

    // The key an item was added under (empty when none).
    QString keyAt(int position) const { return entries_.at(indexOfPosition(position)).key; }
    bool containsKey(const QString& key) const { return indexOfKey(key).has_value(); }
    void clear() { entries_.clear(); }

    // Iteration over the items in order, as the host's For Each does.
    class const_iterator {
    public:
        using Inner = typename std::vector<Entry>::const_iterator;
        explicit const_iterator(Inner inner) : inner_(inner) {}
        const Pointer& operator*() const { return inner_->item; }
        const_iterator& operator++() {
            ++inner_;
            return *this;
        }
        bool operator==(const const_iterator& other) const { return inner_ == other.inner_; }

    private:
        Inner inner_;
    };
    const_iterator begin() const { return const_iterator(entries_.begin()); }
    const_iterator end() const { return const_iterator(entries_.end()); }

private:
    std::size_t indexOfPosition(int position) const {
        if (position < 1 || position > Count()) fail(err::SubscriptOutOfRange);
        return static_cast<std::size_t>(position - 1);
    }

    std::optional<std::size_t> indexOfKey(const QString& key) const {
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            if (!entries_[i].key.isEmpty() &&
                entries_[i].key.compare(key, Qt::CaseInsensitive) == 0) {
                return i;
            }
        }
        return std::nullopt;
    }

    std::size_t requireKey(const QString& key) const {
        const auto index = indexOfKey(key);
        if (!index) fail(err::InvalidProcedureCall);
        return *index;
    }

    std::vector<Entry> entries_;
};

}  // namespace tvrx
