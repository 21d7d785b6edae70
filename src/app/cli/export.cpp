// export: every tile, sprite, delta and palette of a style into a folder.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "imagefiles.h"
#include "style/clssty.h"

namespace fs = std::filesystem;

namespace ombrevale::cli {
namespace {

std::string Numbered(const char* stem, int n, int digits) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%s-%0*d", stem, digits, n);
    return buf;
}

class ProgressBar {
public:
    explicit ProgressBar(long total) : total_(total), shown_(isatty(2) != 0) {}
    ~ProgressBar() {
        if (shown_ && drawn_) std::fputc('\n', stderr);
    }
    void Step() {
        ++done_;
        const long percent = total_ > 0 ? done_ * 100 / total_ : 100;
        if (!shown_ || percent == last_) return;
        last_ = percent;
        drawn_ = true;
        const int filled = static_cast<int>(percent * 40 / 100);
        std::fprintf(stderr, "\rexporting [%.*s%*s] %ld/%ld", filled, "########################################",
                     40 - filled, "", done_, total_);
        std::fflush(stderr);
    }

private:
    long total_, done_ = 0, last_ = -1;
    bool shown_, drawn_ = false;
};

// PNG has no picture of no pixels; such a sprite is named and left out.
bool SkipEmptyInPng(const clsSTY& doc, const Args& args, int s, const std::string& what) {
    if (!args.png || (doc.GetSpriteWidth(s) > 0 && doc.GetSpriteHeight(s) > 0)) return false;
    std::fprintf(stderr, "ombrevale-cli: %s is %dx%d pixels, which PNG cannot hold: skipped\n", what.c_str(),
                 doc.GetSpriteWidth(s), doc.GetSpriteHeight(s));
    return true;
}

struct Job {
    std::string path;
    std::function<void(const std::string&)> write;
};

}  // namespace

int RunExport(const Args& args) {
    const std::string& style = args.words[0];
    const fs::path dir = args.words[1];
    clsSTY doc;
    LoadStyle(doc, style);
    const char* ext = args.png ? ".png" : ".bmp";

    // Everything is checked before the first file is written.
    std::vector<Job> jobs;
    for (int t = 0; t < doc.GetNumOfTiles(); ++t) {
        CheckedTilePalette(doc, style, t);
        jobs.push_back(
            {(dir / "tiles" / (Numbered("tile", t, 4) + ext)).string(), [&doc, t, &args](const std::string& p) {
                 WritePicture(p, args.png, [&](const std::string& bmp) { return doc.SaveTile(bmp, t); });
             }});
    }
    for (int s = 0; s < doc.GetNumOfSprx(); ++s) {
        CheckSprite(doc, style, s);
        CheckedSpritePalette(doc, style, s, -1);
        if (SkipEmptyInPng(doc, args, s, "sprite " + std::to_string(s))) continue;
        jobs.push_back(
            {(dir / "sprites" / (Numbered("sprite", s, 4) + ext)).string(), [&doc, s, &args](const std::string& p) {
                 WritePicture(p, args.png, [&](const std::string& bmp) {
                     std::int16_t pal = -1;
                     return doc.SaveSprite(bmp, s, pal);
                 });
             }});
    }
    std::vector<std::int16_t> seen;
    for (const auto& entry : modDeclares::STYDeltaIndex) {
        // Only the first entry of a sprite is ever found; a later one names no delta of its own.
        if (std::find(seen.begin(), seen.end(), entry.sprite) != seen.end()) continue;
        seen.push_back(entry.sprite);
        const std::int16_t s = entry.sprite;
        CheckSprite(doc, style, s);
        CheckedSpritePalette(doc, style, s, -1);
        for (int d = 0; d < entry.deltaCount; ++d) {
            if (SkipEmptyInPng(doc, args, s, "delta " + std::to_string(d) + " of sprite " + std::to_string(s)))
                continue;
            const std::string name = Numbered("sprite", s, 4) + "-" + Numbered("delta", d, 2) + ext;
            jobs.push_back({(dir / "deltas" / name).string(), [&doc, s, d, &args](const std::string& p) {
                                WritePicture(p, args.png, [&](const std::string& bmp) {
                                    std::int16_t pal = -1;
                                    return doc.SaveDelta(bmp, static_cast<std::int16_t>(d), s, pal);
                                });
                            }});
        }
    }
    for (int p = 0; p < doc.GetNumOfPals(); ++p)
        jobs.push_back({(dir / "palettes" / (Numbered("palette", p, 3) + ".pal")).string(),
                        [p](const std::string& path) { WriteJascPalette(path, p); }});

    std::error_code ec;
    for (const char* sub : {"tiles", "sprites", "deltas", "palettes"}) {
        fs::create_directories(dir / sub, ec);
        if (ec) throw Failure((dir / sub).string(), "cannot be made (" + ec.message() + ")");
    }
    std::vector<std::string> written;
    ProgressBar bar(static_cast<long>(jobs.size()));
    try {
        for (const Job& job : jobs) {
            job.write(job.path);
            written.push_back(job.path);
            bar.Step();
        }
    } catch (...) {
        // A half export is no export: what this run wrote goes again.
        for (const auto& f : written) fs::remove(f, ec);
        throw;
    }
    return 0;
}

}  // namespace ombrevale::cli
