#pragma once

#include <QByteArray>

#include <optional>

namespace roost::test {

/// Sets a variable of the environment, or unsets it, and puts back what was there when it goes.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const std::optional<QByteArray>& value);
    ~ScopedVariable();

    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    std::optional<QByteArray> previous_;
};

} // namespace roost::test
