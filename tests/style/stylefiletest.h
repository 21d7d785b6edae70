#pragma once
// A test that writes style files into a folder of its own and loads them, with
// the shared stores empty before and after.

#include <gtest/gtest.h>

#include <string>

#include "style/clssty.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace ombrevale::testsupport {

class StyleFileTest : public ::testing::Test {
protected:
    void SetUp() override { modDeclares::ResetSharedStores(); }
    void TearDown() override { modDeclares::ResetSharedStores(); }

    bool Load(const stylewriter::Bytes& bytes, clsSTY& into, const std::string& name = "style.sty") {
        const std::string path = dir.File(name);
        stylewriter::WriteFile(path, bytes);
        return into.LoadSTY(path);
    }
    bool Load(const stylewriter::Bytes& bytes, const std::string& name = "style.sty") { return Load(bytes, doc, name); }

    TempDir dir;
    clsSTY doc;
};

}  // namespace ombrevale::testsupport
