// A list whose copies share its elements.
#pragma once

#include "base/largevalue.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ellwynd {

/// An immutable list. Copies share the elements, so that copying takes constant time. References to
/// elements are valid as long as any copy.
template<class T>
class SharedList {
    struct Elements {
        /// Empty if the elements belong to other lists.
        std::vector<T> own;
        std::vector<const T *> others;
        std::vector<SharedList> owners;

        [[nodiscard]] std::size_t size() const { return own.empty() ? others.size() : own.size(); }
        [[nodiscard]] const T &operator[](std::size_t index) const {
            return own.empty() ? *others[index] : own[index];
        }
    };

  public:
    using value_type = T;

    class const_iterator {
      public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T *;
        using reference = const T &;

        const_iterator() = default;
        const_iterator(const Elements *elements, std::size_t index)
            : elements(elements), index(index) {}

        const T &operator*() const { return (*elements)[index]; }
        const T *operator->() const { return &**this; }
        const T &operator[](difference_type n) const { return *(*this + n); }
        const_iterator &operator+=(difference_type n) {
            index += std::size_t(n);
            return *this;
        }
        const_iterator &operator-=(difference_type n) { return *this += -n; }
        const_iterator &operator++() { return *this += 1; }
        const_iterator &operator--() { return *this += -1; }
        const_iterator operator++(int) { return std::exchange(*this, *this + 1); }
        const_iterator operator--(int) { return std::exchange(*this, *this - 1); }
        friend const_iterator operator+(const_iterator a, difference_type n) { return a += n; }
        friend const_iterator operator+(difference_type n, const_iterator a) { return a += n; }
        friend const_iterator operator-(const_iterator a, difference_type n) { return a -= n; }
        friend difference_type operator-(const const_iterator &a, const const_iterator &b) {
            return difference_type(a.index - b.index);
        }
        friend bool operator==(const const_iterator &a, const const_iterator &b) {
            return a.index == b.index;
        }
        friend auto operator<=>(const const_iterator &a, const const_iterator &b) {
            return a.index <=> b.index;
        }

      private:
        const Elements *elements = nullptr;
        std::size_t index = 0;
    };

    SharedList() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): it is a vector that does not change any more.
    SharedList(std::vector<T> list) {
        if (!list.empty())
            elements = std::make_shared<const Elements>(Elements{.own = std::move(list)});
    }
    SharedList(std::initializer_list<T> list) : SharedList(std::vector<T>(list)) {}

    /// A list of elements with many allocations each, which are released as by `shareLarge`.
    [[nodiscard]] static SharedList large(std::vector<T> list) {
        SharedList shared;
        if (!list.empty())
            shared.elements = shareLarge(Elements{.own = std::move(list)});
        return shared;
    }
    /// Elements of other lists, which are not copied.
    /// @param owners the lists that they belong to, which are kept with them.
    [[nodiscard]] static SharedList
    ofElements(std::vector<const T *> elements, std::vector<SharedList> owners) {
        SharedList shared;
        if (!elements.empty())
            shared.elements =
                shareLarge(Elements{.others = std::move(elements), .owners = std::move(owners)});
        return shared;
    }

    [[nodiscard]] const_iterator begin() const { return {elements.get(), 0}; }
    [[nodiscard]] const_iterator end() const { return {elements.get(), size()}; }
    [[nodiscard]] std::size_t size() const { return elements ? elements->size() : 0; }
    [[nodiscard]] bool empty() const { return elements == nullptr; }
    [[nodiscard]] const T &operator[](std::size_t index) const { return (*elements)[index]; }
    /// @throws std::out_of_range
    [[nodiscard]] const T &at(std::size_t index) const {
        if (index >= size())
            throw std::out_of_range("SharedList::at");
        return (*elements)[index];
    }
    [[nodiscard]] const T &front() const { return (*elements)[0]; }
    [[nodiscard]] const T &back() const { return (*elements)[size() - 1]; }

    bool operator==(const SharedList &other) const {
        const auto areEqual = [](const T &a, const T &b) { return &a == &b || a == b; };
        return elements == other.elements || std::ranges::equal(*this, other, areEqual);
    }

  private:
    /// Null if the list is empty.
    std::shared_ptr<const Elements> elements;
};

} // namespace ellwynd
