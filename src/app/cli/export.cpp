// export: every tile, sprite, delta and palette of a style into a folder.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "checks.h"
#include "clierror.h"
#include "commands.h"
#include "imagefiles.h"
#include "pixels/exportnames.h"
#include "style/clssty.h"

namespace fs = std::filesystem;

namespace ombrevale::cli {
namespace {

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
    // Its row in the index: kind, number, caption, palette, width, height.
    std::string row;
};

std::string Row(const char* kind, int number, const std::string& caption, int palette, int width, int height) {
    // A caption holds no comma or quote, so the fields need no quoting.
    return std::string(kind) + "," + std::to_string(number) + "," + caption + "," + std::to_string(palette) + "," +
           std::to_string(width) + "," + std::to_string(height);
}

// The index a painter finds the car among the sprite files with; import passes it over.
bool WriteIndex(const std::string& path, const std::vector<Job>& jobs, const fs::path& dir) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    bool ok = std::fputs("file,kind,number,caption,palette,width,height\n", f) >= 0;
    for (const Job& job : jobs)
        ok = ok && std::fprintf(f, "%s,%s\n", fs::path(job.path).lexically_relative(dir).generic_string().c_str(),
                                job.row.c_str()) > 0;
    return std::fclose(f) == 0 && ok;
}

}  // namespace

int RunExport(const Args& args) {
    const std::string& style = args.words[0];
    const fs::path dir = args.words[1];
    clsSTY doc;
    LoadStyle(doc, style);
    using exportnames::Kind;
    const auto at = [&](Kind kind, int number, int delta = 0) {
        return (dir / exportnames::Path({kind, number, delta, args.png})).string();
    };
    const std::array<std::int16_t, 6> groups = modDeclares::STYSpriteBase;

    // Everything is checked before the first file is written.
    std::vector<Job> jobs;
    for (int t = 0; t < doc.GetNumOfTiles(); ++t) {
        const int pal = CheckedTilePalette(doc, style, t);
        jobs.push_back({at(Kind::Tile, t),
                        [&doc, t, &args](const std::string& p) {
                            WritePicture(
                                p, args.png, [&](const std::string& bmp) { return doc.SaveTile(bmp, t); },
                                Durability::Quick);
                        },
                        Row("tile", t, "Index: " + std::to_string(t), pal, kTileSide, kTileSide)});
    }
    for (int s = 0; s < doc.GetNumOfSprx(); ++s) {
        CheckSprite(doc, style, s);
        const int pal = CheckedSpritePalette(doc, style, s, -1);
        if (SkipEmptyInPng(doc, args, s, "sprite " + std::to_string(s))) continue;
        jobs.push_back({at(Kind::Sprite, s),
                        [&doc, s, &args](const std::string& p) {
                            WritePicture(
                                p, args.png,
                                [&](const std::string& bmp) {
                                    std::int16_t own = -1;
                                    return doc.SaveSprite(bmp, s, own);
                                },
                                Durability::Quick);
                        },
                        Row("sprite", s, exportnames::SpriteCaption(groups, s), pal, doc.GetSpriteWidth(s),
                            doc.GetSpriteHeight(s))});
    }
    std::vector<std::int16_t> seen;
    for (const auto& entry : modDeclares::STYDeltaIndex) {
        // Only the first entry of a sprite is ever found; a later one names no delta of its own.
        if (std::find(seen.begin(), seen.end(), entry.sprite) != seen.end()) continue;
        seen.push_back(entry.sprite);
        const std::int16_t s = entry.sprite;
        CheckSprite(doc, style, s);
        const int pal = CheckedSpritePalette(doc, style, s, -1);
        for (int d = 0; d < entry.deltaCount; ++d) {
            if (SkipEmptyInPng(doc, args, s, "delta " + std::to_string(d) + " of sprite " + std::to_string(s)))
                continue;
            jobs.push_back({at(Kind::Delta, s, d),
                            [&doc, s, d, &args](const std::string& p) {
                                WritePicture(
                                    p, args.png,
                                    [&](const std::string& bmp) {
                                        std::int16_t own = -1;
                                        return doc.SaveDelta(bmp, static_cast<std::int16_t>(d), s, own);
                                    },
                                    Durability::Quick);
                            },
                            Row("delta", s, exportnames::SpriteCaption(groups, s) + " delta " + std::to_string(d), pal,
                                doc.GetSpriteWidth(s), doc.GetSpriteHeight(s))});
        }
    }
    for (int p = 0; p < doc.GetNumOfPals(); ++p)
        jobs.push_back({at(Kind::Palette, p),
                        [p](const std::string& path) { WriteJascPalette(path, p, Durability::Quick); },
                        Row("palette", p, "Palette: " + std::to_string(p + 1), p, 256, 1)});

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
        const std::string index = (dir / "index.csv").string();
        WriteThrough(index, [&](const std::string& temp) { return WriteIndex(temp, jobs, dir); });
        written.push_back(index);
    } catch (...) {
        // A half export is no export: what this run wrote goes again.
        for (const auto& f : written) fs::remove(f, ec);
        throw;
    }
    std::printf("%zu files written into %s, listed in %s\n", jobs.size() + 1, dir.string().c_str(),
                (dir / "index.csv").string().c_str());
    return 0;
}

}  // namespace ombrevale::cli
