// The command line of the tool that reads and writes settings, an argument a line, on a folder of its own.

#include "Input.h"

#include "tools/Defaults.h"

#include <filesystem>
#include <sstream>

#include <unistd.h>

namespace {

/// Goes with the process.
struct Folder {
    std::filesystem::path path = std::filesystem::temp_directory_path() / ("vantry-fuzz-" + std::to_string(::getpid()));

    Folder() { std::filesystem::create_directories(path); }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Folder folder;
    auto arguments = Input::lines(Input::text(data, size));
    // One domain is enough, and no file but its own is read or written.
    if (arguments.size() > 1)
        arguments[1] = arguments[1].find('/') == std::string::npos && arguments[1].size() > 3 ? "org.example.trial"
                                                                                              : arguments[1];
    if (arguments.size() > 2 && (arguments[0] == "import" || arguments[0] == "export"))
        arguments[2] = folder.path / "file.plist";
    std::ostringstream out;
    std::ostringstream errors;
    const int status = Defaults::run(folder.path, arguments, out, errors);
    if ((status != 0) != !errors.str().empty())
        std::abort();
    return 0;
}
