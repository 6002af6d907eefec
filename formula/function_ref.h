#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace GenICam {

template <class Signature>
class function_ref;

/// Refers to a callable for the time of a call, and owns nothing: for parameters only.
template <class Result, class... Arguments>
class function_ref<Result(Arguments...)> {
public:
    template <class Callable, class = std::enable_if_t<!std::is_same_v<std::decay_t<Callable>, function_ref>>>
    function_ref(Callable&& callable) noexcept  // implicit, so that a lambda can be passed
        : object_(pointer_to(std::addressof(callable))), call_(&call<std::remove_reference_t<Callable>>) {}

    Result operator()(Arguments... arguments) const {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    static void* pointer_to(const void* callable) noexcept {
        return const_cast<void*>(callable);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }

    template <class Callable>
    static Result call(void* object, Arguments... arguments) {
        return (*static_cast<Callable*>(object))(std::forward<Arguments>(arguments)...);
    }

    void* object_;
    Result (*call_)(void*, Arguments...);
};

}  // namespace GenICam
