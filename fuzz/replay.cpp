// Runs a target on files, or on all files of folders, once each: what was found by trying stays found.

#include "Input.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

int replay(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes { std::istreambuf_iterator<char>(in), {} };
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return 1;
}

}

int main(int argc, char** argv)
{
    int count = 0;
    for (int index = 1; index < argc; ++index) {
        if (!fs::is_directory(argv[index])) {
            count += replay(argv[index]);
            continue;
        }
        for (const auto& file : fs::recursive_directory_iterator(argv[index]))
            if (file.is_regular_file())
                count += replay(file.path());
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
