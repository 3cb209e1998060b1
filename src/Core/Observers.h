#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace vh {

/// Who is told of changes. No lock of its own: an owner that several threads call adds and copies under its mutex, and
/// tells from the copy outside it.
template <class... Args>
class Observers {
public:
    using Observer = std::function<void(Args...)>;

    /// Called until the token goes.
    [[nodiscard]] std::shared_ptr<void> add(Observer observer) {
        std::erase_if(list_, [](const auto& each) { return each.expired(); });
        auto token = std::make_shared<Observer>(std::move(observer));
        list_.push_back(token);
        return token;
    }

    /// Calls those of now whose token is still there at their turn. They may add others, drop tokens and end the owner.
    void tell(Args... args) const {
        for (const auto& each : std::vector(list_))
            if (const auto alive = each.lock())
                (*alive)(args...);
    }

private:
    std::vector<std::weak_ptr<Observer>> list_;
};

} // namespace vh
