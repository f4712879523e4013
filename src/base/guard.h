// The exported boundary: nothing thrown inside, by the library or by a host callback, crosses it.
#pragma once

#include <utility>

// Runs `body` and answers its result, or `failure` when it throws.
template <class Result, class Body>
Result Guarded(Result failure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return failure;
    }
}

// The same for calls without a result.
template <class Body>
void Guarded(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the call answers as for a failure, silently
    }
}

// Runs `body`; false when it throws. For the steps of a change that has to be completed.
template <class Body>
bool Attempt(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        return false;
    }
}
