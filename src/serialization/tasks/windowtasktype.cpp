#include "windowtasktype.h"

#include "pmxnamedvalues.h"

namespace {

const pmxNamedValues<WindowTaskType> &actionNames()
{
    static const pmxNamedValues<WindowTaskType> table({
        {WindowTaskShow, "show"},
        {WindowTaskHide, "hide"},
    });
    return table;
}

} // namespace

std::ostream &operator<<(std::ostream &stream, WindowTaskType type)
{
    return actionNames().write(stream, type);
}

std::istream &operator>>(std::istream &stream, WindowTaskType &type)
{
    return actionNames().read(stream, type);
}
