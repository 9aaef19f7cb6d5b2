#include "batch/batch_report.h"

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

TEST(BatchReport, TextsOpenNoTagAndEndNoQuote) {
    EXPECT_EQ(htmlText("<a href=\"x\" b='y'> & co\n"),
              "&lt;a href=&quot;x&quot; b=&#39;y&#39;&gt; &amp; co?");
    EXPECT_EQ(htmlText("\xff \xc3\xa9"), "\xEF\xBF\xBD \xc3\xa9");
}

TEST(BatchReport, LinksKeepEveryByteOfAPath) {
    EXPECT_EQ(linkText("../a b/50%#?.png"), "../a%20b/50%25%23%3F.png");
    EXPECT_EQ(linkText("\n\"'<\xff"), "%0A%22%27%3C%FF");
}

}  // namespace
}  // namespace orv::cli
