#include "qrvel/channel/neighbour_files.h"

#include <gtest/gtest.h>

#include "scratch_folder.h"

namespace qrvel {

namespace {

class NeighbourFiles : public testing::Test {
  protected:
    NeighbourFiles() {
        for (const char* name : {"a2.plt", "a10.hpgl", "B.PLT", "c.gl", "notes.txt", "z.prn"}) {
            folder.write(name, "IN;");
        }
    }

    ScratchFolder folder;  // the current one
};

struct Step {
    const char* from;
    int by;
    const char* to;
};

TEST_F(NeighbourFiles, OfAFolderComeByNameAndNumber) {
    for (const Step& step : {Step{"a2.plt", 1, "a10.hpgl"}, Step{"a10.hpgl", 1, "B.PLT"}, Step{"B.PLT", 1, "c.gl"},
                             Step{"c.gl", 1, ""}, Step{"a2.plt", -1, ""}, Step{"c.gl", -3, "a2.plt"},
                             Step{"notes.txt", -1, "c.gl"}, Step{"notes.txt", 1, ""}, Step{"gone.plt", -1, "c.gl"}}) {
        const QByteArray found = neighbourOf(step.from, {step.from}, step.by);
        const QByteArray name = found.mid(found.lastIndexOf('/') + 1);
        EXPECT_EQ(name.toStdString(), step.to) << step.from << ' ' << step.by;
    }
}

TEST_F(NeighbourFiles, ThatWereNamedComeInTheirOrder) {
    const std::vector<QByteArray> named = {"c.gl", "./a2.plt", "z.prn"};
    EXPECT_EQ(neighbourOf("c.gl", named, 1), "./a2.plt");
    EXPECT_EQ(neighbourOf("a2.plt", named, 1), "z.prn");
    EXPECT_EQ(neighbourOf("z.prn", named, 1), "");
    EXPECT_EQ(neighbourOf("B.PLT", named, 1), "");
    EXPECT_EQ(neighbourOf("", named, 1), "");
}

}  // namespace

}  // namespace qrvel
