// The same in C++, of the file's bytes in memory, and once more through the handle contract.
#include <fiid.h>
#include <fiid/base_utility.h>
#include <fiid/detect.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::ifstream file(argv[1], std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    fiid_result result;
    if (fiid_detect_memory(bytes.data(), bytes.size(), argv[1], nullptr, &result) != FIID_OK) return 1;

    FIID fiid = 0;
    if (FIInit(nullptr) != 0) return 1;
    if (FIIdFile(IOSpecNarrow, argv[1], FIFlagExtendedText, &fiid) != 0 || fiid != result.fiid) return 1;
    FIDeInit(nullptr);
    std::cout << result.fiid << ' ' << result.mime << '\n';
}
