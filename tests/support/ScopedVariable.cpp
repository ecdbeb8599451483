#include "tests/support/ScopedVariable.h"

#include <QtGlobal>

namespace roost::test {

namespace {

void setVariable(const char* name, const std::optional<QByteArray>& value)
{
    if (value) {
        qputenv(name, *value);
    } else {
        qunsetenv(name);
    }
}

} // namespace

ScopedVariable::ScopedVariable(const char* name, const std::optional<QByteArray>& value) : name_(name)
{
    if (qEnvironmentVariableIsSet(name)) {
        previous_ = qgetenv(name);
    }
    setVariable(name, value);
}

ScopedVariable::~ScopedVariable() { setVariable(name_, previous_); }

} // namespace roost::test
