/// \file
/// Error handlers that throw, for a part of the inputs.
#pragma once

#include <optional>
#include <stdexcept>

#include "fuzz/frame/fuzzing.h"
#include "zul/kernel/client.h"

namespace fuzz {

/// Reports go unheard, or with \p throwing end the call that made them.
class Reporting {
public:
    explicit Reporting(bool throwing) {
        if (throwing) m_Scope.emplace(&m_Handler);
    }

    /// \returns whether \p work came to its end.
    template <class Work>
    static bool Try(Work&& work) {
        try {
            work();
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    }

private:
    zul::CThrowingErrorHandler m_Handler;
    std::optional<zul::CErrorHandlerScope> m_Scope;
};

}  // namespace fuzz
