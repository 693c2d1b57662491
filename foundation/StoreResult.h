#pragma once

#include <QString>

namespace kestrin::foundation {

/// What became of a value that was to be kept. The sentences are for people.
struct StoreResult {
    /// Why it was not kept; empty when it was.
    QString problem;
    /// What the user has to know all the same: that a file was set aside.
    QString notice;

    bool isKept() const { return problem.isEmpty(); }
    explicit operator bool() const { return isKept(); }

    /// Of several values: the first of the problems, and the first of the notices.
    StoreResult &operator&=(const StoreResult &other) {
        if (problem.isEmpty())
            problem = other.problem;
        if (notice.isEmpty())
            notice = other.notice;
        return *this;
    }
};

} // namespace kestrin::foundation
