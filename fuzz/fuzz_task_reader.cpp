// Reads any text as a message from the extension. What could be read must come out the same when
// it is written and read again.

#include "pmxjsonserializeobject.h"
#include "pmxkovbhipctask.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

const char *const TypeMismatch =
    R"x("type mismatch! call is<type>() before get<type>()" && is<object>())x";

std::string written(pmxKovBhIpcTask &task)
{
    std::ostringstream out;
    require(pmxJsonSerializeObject(task, out, 0));
    return out.str();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    pmxKovBhIpcTask task;
    bool read = false;
    try {
        read = pmxJsonSerializeObject(task, text, 0);
    } catch (const std::runtime_error &error) {
        require(std::string(error.what()) == TypeMismatch);
    }
    if (read) {
        const std::string first = written(task);
        pmxKovBhIpcTask again;
        require(pmxJsonSerializeObject(again, first, 0));
        require(written(again) == first);
    }
    return 0;
}
