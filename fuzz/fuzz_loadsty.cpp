// Any bytes as a style file: the load must end in order, and whatever it
// loaded must save again.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "style/clssty.h"
#include "style/hooks.h"

namespace {

std::string ScratchPath(const char* suffix) {
    static const std::string base =
        (std::filesystem::temp_directory_path() / ("ombrevale-fuzz-" + std::to_string(::getpid()))).string();
    return base + suffix;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = [] {
        DocumentHooks hooks;
        hooks.msgBox = [](const std::string&, const std::string&, MsgIcon) {};
        InstallDocumentHooks(hooks);
        return true;
    }();
    (void)quiet;
    const std::string in = ScratchPath(".sty");
    {
        std::ofstream f(in, std::ios::binary | std::ios::trunc);
        f.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    modDeclares::ResetSharedStores();
    clsSTY doc;
    if (doc.LoadSTY(in)) {
        const std::string out = ScratchPath("-out.sty");
        doc.SaveSTY(out);
        std::remove(out.c_str());
        std::remove((out + ".bak").c_str());
    }
    std::remove(in.c_str());
    return 0;
}
