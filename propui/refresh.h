#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ZELPropUI {

class ISliderController;

/// How long an answer of an item serves: to the end of the refresh that asked, or to a write or another
/// refresh before that.
class AnswerSpan {
public:
    void Begin() noexcept {
        ++open_;
        ++now_;
    }
    void End() noexcept {
        --open_;
        ++now_;
    }
    /// What was learnt so far serves no longer.
    void Forget() noexcept { ++now_; }
    [[nodiscard]] std::uint64_t Now() const noexcept { return now_; }
    [[nodiscard]] bool Serves(std::uint64_t learnt_at) const noexcept {
        return open_ > 0 && learnt_at == now_;
    }

private:
    int open_ = 0;
    std::uint64_t now_ = 1;
};

/// One answer of an item, a failure too, for as long as it serves.
template <class Value>
class KeptAnswer {
public:
    /// `ask` gives whether it is known and writes it. False leaves `value` as it stands.
    template <class Ask>
    bool Get(const AnswerSpan& span, Value& value, Ask&& ask) {
        if (!span.Serves(learnt_at_)) {
            // A driver that runs messages may bring about another refresh or a write: then this answer is
            // older than what they left.
            const std::uint64_t asked_at = span.Now();
            Value answer{};
            known_ = ask(answer);
            value_ = answer;
            learnt_at_ = asked_at;
        }
        if (known_) value = value_;
        return known_;
    }

private:
    std::uint64_t learnt_at_ = 0;
    bool known_ = false;
    Value value_{};
};

/// A refresh of the controls of one element: while it lasts, their controller asks the item once for each
/// thing that they show. The controller must outlive it.
class ElementRefresh {
public:
    ElementRefresh() = default;
    explicit ElementRefresh(ISliderController& controller) { TurnTo(&controller); }
    ElementRefresh(const ElementRefresh&) = delete;
    ElementRefresh& operator=(const ElementRefresh&) = delete;
    ~ElementRefresh() { TurnTo(nullptr); }

    /// Whether a control with this controller shows the same element. Without a controller none does.
    [[nodiscard]] bool Covers(const ISliderController* controller) const noexcept {
        return controller != nullptr && controller == controller_;
    }
    /// Ends the refresh of the element before, if this is another one.
    void TurnTo(ISliderController* controller);

private:
    ISliderController* controller_ = nullptr;
};

/// Which control of a page is shown anew next, and how long that may wait for the user's input. A change has
/// every control shown once more, from the one on that is next: so a page is current one turn after the last
/// change, and a stream of changes leaves none of its controls behind.
class RefreshTurn {
public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds patience{100};

    /// Something changed.
    void Require(std::size_t controls) noexcept { left_ = controls; }
    [[nodiscard]] bool IsOver() const noexcept { return left_ == 0; }
    [[nodiscard]] std::size_t Next() const noexcept { return next_; }
    /// `Next` is being shown.
    void Take(std::size_t controls) noexcept;

    /// What a turn over the page gives away comes to `patience` at most.
    [[nodiscard]] bool MayWait() const noexcept { return waited_ < patience; }
    [[nodiscard]] bool IsWaiting() const noexcept { return waiting_since_.has_value(); }
    void Wait(Time now) noexcept { waiting_since_ = now; }
    void GoOn(Time now) noexcept;

private:
    std::size_t next_ = 0;
    std::size_t left_ = 0;
    std::optional<Time> waiting_since_;
    std::chrono::steady_clock::duration waited_{};
};

}  // namespace ZELPropUI
