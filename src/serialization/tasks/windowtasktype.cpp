#include "windowtasktype.h"

#include "pmxnamedvalues.h"

namespace {

const pmxNamedValues<WindowTaskType> &names()
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
    return names().write(stream, type);
}

std::istream &operator>>(std::istream &stream, WindowTaskType &type)
{
    return names().read(stream, type);
}
