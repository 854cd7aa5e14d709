#pragma once
/// Answers that a camera may refuse.

#include <nlohmann/json.hpp>

#include "support/Error.h"
#include "support/Json.h"

/// What `ask` returns; null where there is no answer, such as the limits of a feature that isn't
/// available. Raises the loss of the camera.
template <class Ask>
Json OrNull(const Ask& ask) {
    Json answer;
    const auto failure = FailureOf([&] { answer = ask(); });
    if (failure && failure->Code() == ExitCode::Lost) {
        throw *failure;
    }
    return answer;
}
