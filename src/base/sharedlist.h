// A list whose copies share its elements.
#pragma once

#include "base/largevalue.h"

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <vector>

namespace ellwynd {

/// An immutable list. Copies share the elements, so that copying takes constant time. References to
/// elements are valid as long as any copy.
template<class T>
class SharedList {
  public:
    using value_type = T;
    using const_iterator = const T *;

    SharedList() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): it is a vector that does not change any more.
    SharedList(std::vector<T> list)
        : elements(
              list.empty() ? nullptr : std::make_shared<const std::vector<T>>(std::move(list))) {}
    /// A list of elements with many allocations each, which are released as by `shareLarge`.
    [[nodiscard]] static SharedList large(std::vector<T> list) {
        SharedList shared;
        if (!list.empty())
            shared.elements = shareLarge(std::move(list));
        return shared;
    }
    SharedList(std::initializer_list<T> list) : SharedList(std::vector<T>(list)) {}

    [[nodiscard]] const T *begin() const { return elements ? elements->data() : nullptr; }
    [[nodiscard]] const T *end() const { return begin() + size(); }
    [[nodiscard]] std::size_t size() const { return elements ? elements->size() : 0; }
    [[nodiscard]] bool empty() const { return elements == nullptr; }
    [[nodiscard]] const T &operator[](std::size_t index) const { return begin()[index]; }
    /// @throws std::out_of_range
    [[nodiscard]] const T &at(std::size_t index) const {
        static const std::vector<T> none;
        return (elements ? *elements : none).at(index);
    }
    [[nodiscard]] const T &front() const { return *begin(); }
    [[nodiscard]] const T &back() const { return end()[-1]; }

    bool operator==(const SharedList &other) const {
        return elements == other.elements || std::ranges::equal(*this, other);
    }

  private:
    /// Null if the list is empty.
    std::shared_ptr<const std::vector<T>> elements;
};

} // namespace ellwynd
