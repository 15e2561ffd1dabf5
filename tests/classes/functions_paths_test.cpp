// Splitting file names: drive, folders, name and extension, the UNC
// and "my documents" forms, against a documents folder in a temporary home.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "crvlib/functions.h"
#include "tests/testing/temporary_folder.h"

namespace crvlib {
namespace {

namespace fs = std::filesystem;

// What every routine gives for one file name. ParseFileName agrees with
// the single routines except for its Path, which is listed apart.
struct Split {
  std::u16string file, drive, path, full_path, name, full_name, extension, file_path;
};

void ExpectSplit(const Split& c) {
  SCOPED_TRACE(String(c.file).ToUtf8());
  const String file(c.file);
  EXPECT_EQ(Functions::ParseGetDrive(file), c.drive);
  EXPECT_EQ(Functions::ParseGetPath(file), c.path);
  EXPECT_EQ(Functions::ParseGetFullPath(file), c.full_path);
  EXPECT_EQ(Functions::ParseGetFileName(file), c.name);
  EXPECT_EQ(Functions::ParseGetFullFileName(file), c.full_name);
  EXPECT_EQ(Functions::ParseGetExtension(file), c.extension);
  String drive, path, name, extension;
  Functions::ParseFileName(file, drive, path, name, extension);
  EXPECT_EQ(drive, c.drive);
  EXPECT_EQ(path, c.file_path);
  EXPECT_EQ(name, c.name);
  EXPECT_EQ(extension, c.extension);
}

TEST(Paths, SplitsFileNames) {
  const Split kCases[] = {
      // file, drive, path, full path, name, full name, extension, ParseFileName's path
      {u"C:\\dir\\sub\\file.txt", u"C", u"\\dir\\sub\\", u"C:\\dir\\sub\\", u"file", u"file.txt",
       u"txt", u"\\dir\\sub\\"},
      {u"\\\\srv\\share\\dir\\file.txt", u"\\\\srv\\share", u"\\dir\\", u"", u"file", u"file.txt",
       u"txt", u"\\dir\\"},
      // A bare share: the name is read from the file name as written.
      {u"\\\\srv\\share", u"\\\\srv\\share", u"\\", u"", u"share", u"share", u"share", u"\\"},
      {u"file.txt", u"", u"", u"", u"file", u"file.txt", u"txt", u""},
      {u"C:file.txt", u"C", u"", u"", u"C:file", u"C:file.txt", u"txt", u"\\"},
      {u"dir\\file.txt", u"", u"", u"", u"file", u"file.txt", u"txt", u""},
      {u"1:\\x.txt", u"", u"\\", u"1:\\", u"x", u"x.txt", u"txt", u"\\"},    // numeric drive
      {u"AB:\\x.txt", u"", u"\\", u"AB:\\", u"x", u"x.txt", u"txt", u"\\"},  // two letters
      {u":\\x.txt", u"", u"", u"", u"x", u"x.txt", u"txt", u""},  // a leading colon is no drive
      {u"a:b:c\\x", u"a", u"b\\", u"a:b:c\\", u"x", u"x", u"x", u"b\\"},  // second part only
      {u"archive.tar.gz", u"", u"", u"", u"tar", u"archive.tar.gz", u"gz", u""},
      {u"C:\\v1.2\\a.b", u"C", u"\\v1.2\\", u"C:\\v1.2\\", u"a", u"a.b", u"b", u"\\v1.2\\"},
      {u"README", u"", u"", u"", u"README", u"README", u"README", u""},
      {u"C:\\dir\\", u"C", u"\\dir\\", u"C:\\dir\\", u"", u"", u"", u"\\dir\\"},
  };
  for (const Split& c : kCases) ExpectSplit(c);
}

TEST(ParseFileName, LeavesOutputsAloneForAnEmptyName) {
  String drive = u"d", path = u"p", name = u"n", extension = u"e";
  Functions::ParseFileName(u"", drive, path, name, extension);
  EXPECT_EQ(drive, u"d");
  EXPECT_EQ(path, u"p");
  EXPECT_EQ(name, u"n");
  EXPECT_EQ(extension, u"e");
  for (auto* routine : {&Functions::ParseGetDrive, &Functions::ParseGetPath,
                        &Functions::ParseGetFullPath, &Functions::ParseGetFileName,
                        &Functions::ParseGetFullFileName, &Functions::ParseGetExtension}) {
    EXPECT_EQ(routine(u""), u"");
  }
}

TEST(ParseFileName, ReadsTheNameBeforeWritingAnyOutput) {
  String file = u"C:\\dir\\f.txt";
  String path, name, extension;
  Functions::ParseFileName(file, file, path, name, extension);  // the name is also Drive
  EXPECT_EQ(file, u"C");
  EXPECT_EQ(path, u"\\dir\\");
  EXPECT_EQ(name, u"f");
  EXPECT_EQ(extension, u"txt");
}

std::u16string U16(const std::string& utf8) {
  return String::FromUtf8(utf8).ToU16();
}

// Points the documents folder at `below` (a path after "$HOME").
void SetDocuments(const std::string& home, const std::string& below) {
  fs::create_directories(home + "/.config");
  std::ofstream(home + "/.config/user-dirs.dirs") << "XDG_DOCUMENTS_DIR=\"$HOME" << below << "\"\n";
}

TEST(Paths, MyDocumentsTakesDriveAndPathFromTheDocumentsFolder) {
  TemporaryFolder folder;  // a home of its own
  const std::string& home = folder.path();
  ASSERT_FALSE(home.empty());
  ScopedEnv set_home("HOME", home.c_str()), no_config("XDG_CONFIG_HOME", nullptr);

  // Paths here have no drive letter: the drive is empty and the path and
  // the full path are the folder as GetMyDocumentsPath gives it.
  const std::u16string docs = U16(home + "/Documents/");
  ASSERT_EQ(Functions::GetMyDocumentsPath(), docs);
  ExpectSplit(
      {u"My Documents\\report.doc", u"", docs, docs, u"report", u"report.doc", u"doc", docs});
  // The folders after "my documents" are not added.
  ExpectSplit({u"my documents\\sub\\f.txt", u"", docs, docs, u"f", u"f.txt", u"txt", docs});
  // Without a backslash there is no path, and no drive to give a root.
  ExpectSplit(
      {u"MY DOCUMENTS", u"", u"", docs, u"MY DOCUMENTS", u"MY DOCUMENTS", u"MY DOCUMENTS", u""});
  ExpectSplit({u"My Docs\\x.txt", u"", u"", u"", u"x", u"x.txt", u"txt", u""});

  // A colon inside the folder is no drive separator.
  SetDocuments(home, "/C:/Users/ann");
  const std::u16string odd = U16(home + "/C:/Users/ann/");
  ASSERT_EQ(Functions::GetMyDocumentsPath(), odd);
  ExpectSplit({u"My Documents\\report.doc", u"", odd, odd, u"report", u"report.doc", u"doc", odd});

  // No documents folder (the name is taken by a file): empty drive and path.
  std::ofstream(home + "/taken") << "x";
  SetDocuments(home, "/taken");
  ASSERT_EQ(Functions::GetMyDocumentsPath(), u"");
  ExpectSplit({u"My Documents\\report.doc", u"", u"", u"", u"report", u"report.doc", u"doc", u""});
}

}  // namespace
}  // namespace crvlib
