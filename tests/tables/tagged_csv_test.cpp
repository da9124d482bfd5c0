// SPDX-License-Identifier: MIT
#include "tables/tagged_csv.h"

#include <gtest/gtest.h>

#include "platform/machine.h"
#include "support/temporary_folder.h"

namespace kova::test {

using Texts = std::vector<std::string>;

TEST(TaggedCsv, Columns) {
  const auto expectColumn = [](const std::string& header, const std::string& tag, int column) {
    EXPECT_EQ(getCsvColumn(header, tag), column) << header << " / " << tag;
  };
  expectColumn("Index, export name ,LOCAL NAME", "EXPORT NAME", 1);
  expectColumn("A,B", "C", -1);
  expectColumn(",A,B", "B", 0);
  expectColumn("A,,B", "B", 1);
  expectColumn("A,B,", "C", 2);
  expectColumn("", "A", 0);
  expectColumn(" ,a", "A", 1);
  expectColumn(R"(A,"B",C)", "B", -1);
  expectColumn(R"(A,"B,C",D)", "D", 2);
  expectColumn(R"(A,"B,C)", "C", 2);
  std::string wide;
  for (int count = 0; count < 32767; ++count) wide += "x,";
  EXPECT_EQ(getCsvColumn(wide + "A", "A"), 32767);
  EXPECT_EQ(getCsvColumn("x," + wide + "A", "A"), -1);
}

TEST(TaggedCsv, Fields) {
  const auto expectFields = [](const std::string& line, const Texts& expected) {
    CsvFields fields;
    splitCsvLine(line, fields);
    EXPECT_EQ(Texts(fields.begin(), fields.end()), expected) << line;
    EXPECT_EQ(getCsvField(fields, -1), "") << line;
    EXPECT_EQ(getCsvField(fields, 7), "") << line;
  };
  expectFields("a, b\t,c,", {"a", "b", "c", ""});
  expectFields(R"(a,"b,c",d)", {"a", R"("b,c")", "d"});
  expectFields(R"("a,b",c)", {R"("a)", R"(b")", "c"});
  expectFields(R"(a,"b,c)", {"a", R"(")", "", "c"});
  expectFields(R"(a,"b"x,c)", {"a", R"("b")", "", "c"});
  expectFields(R"(a,"""b",c)", {"a", R"("")", R"(b")", "c"});
  expectFields(R"(a, "b,c",")", {"a", R"("b)", R"(c")", R"(")"});
}

TEST(TaggedCsv, Blanks) {
  const std::initializer_list<std::pair<std::string, std::string>> cases{
      {"   ", ""},    {"\r\n  x\t\r\n", "x"},      {"\r x", " x"},     {"x\n\n", "x\n"},
      {"x\n\r", "x"}, {"\r\r\nx", "\r\nx"},        {"\r\nx y", "x y"}, {"x\r \r", "x\r "},
      {"\r\n", ""},   {std::string("\0x", 2), "x"}};
  for (const auto& [text, stripped] : cases) EXPECT_EQ(stripBlanks(text), stripped) << text;
}

TEST(TaggedCsv, LinesAndStops) {
  const auto expectLines = [&](const std::string& content, const std::string& lines,
                               std::size_t stopLine) {
    std::string seen;
    const auto row = [&](const CsvFields& fields, std::int16_t rows) {
      const std::string_view first = getCsvField(fields, 0);
      if (first == "bad") throw Failure("bad");
      if (first == "huge") throw std::bad_alloc();
      seen.append(std::to_string(rows)).append("[").append(first).append("]");
      return first != "skipped";
    };
    const auto header = [&](std::string_view line) { seen.append(line).append(":"); };
    const ReadResult read = readTable(content, header, row);
    EXPECT_EQ(seen, lines) << content;
    EXPECT_EQ(read.stop ? read.stop->line : 0, stopLine) << content;
    EXPECT_EQ(read.onlyLineFeeds, content == "h\na\nb") << content;
  };
  expectLines("", "", 1);
  expectLines("\r\n", ":", 0);
  expectLines("h\r\na\rb\r\n\r\nc", "h:0[a]1[b]2[]3[c]", 0);
  expectLines("h\na\nb", "h\na\nb:", 0);
  expectLines("h\r\r\n", "h:0[]", 0);
  expectLines(";c\r%c\r#c\r ;h\r#d\r;", " ;h:", 0);
  expectLines("h\rskipped\ra\rbad\rx", "h:0[skipped]0[a]", 4);
  expectLines("h\rhuge\rx", "h:", 2);
  const std::string longest(32767, 'x');
  expectLines("h\r" + longest + "\ra", "h:0[" + longest + "]1[a]", 0);
  expectLines("h\ra\r;" + longest + "\ra", "h:0[a]", 3);
  expectLines("h\r" + longest + "x", "h:", 2);
}

TEST(TaggedCsv, ATableLiesInItsFolderOrIsNotOpened) {
  const TemporaryFolder folder;
  const CodePage page = CodePage::windows1252();
  const auto files = realFileSystem(page);
  const auto nothing = [](std::string_view) { return ReadResult{}; };
  for (const std::string name : {"none", "../d.csv"}) {
    EXPECT_EQ(tablesIn(*files, folder.path())(name, nothing).stop.value().line, 0U);
  }
  EXPECT_THROW(fileInFolder(*files, folder.path(), "../d.csv"), Failure);
}

}  // namespace kova::test
