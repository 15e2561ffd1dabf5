// The path routines of Functions: splitting a Windows file name with its
// folders into drive, folder path, name and extension, and the user's
// documents folder.
//
// The splitting never looks at the file system: the file name goes into a
// DynamicString and is cut with its element members, by "\" for the folders,
// by ":" for the drive and by "." for the extension. So the engine's rules
// decide the edges: a name without a dot is element 0 (the whole name) of
// itself, a position past the end gives "", and a colon counts only after the
// first character, because Find answers a 0-based offset and only an offset
// of 1 or more is taken as a drive separator.
//
// Two forms are rewritten before the split. A UNC name \\server\share\rest
// becomes \\server\share:\rest, so the server and share read as the drive, or
// x:\rest where only the folders matter. A file name whose first folder is
// "my documents" (any case) takes its drive and path from the documents
// folder: element 1 and element 2 by ":" of that folder's path. On a system
// whose paths have no drive letter ("/home/ann/Documents/") that rule would
// make the whole folder the drive, so there the drive is empty and the path
// and the full path are the folder exactly as GetMyDocumentsPath gives it.
#include <string>
#include <string_view>
#include <utility>

#include "core/error_frame.h"
#include "crvlib/functions.h"
#include "platform/documents_folder.h"
#include "runtime/letters.h"
#include "runtime/number_parse.h"

namespace crvlib {
namespace {

using internal::Trap;

constexpr const char16_t* kBackslash = u"\\";

enum class UncForm { kAsIs, kShareAsDrive, kDummyDrive };

bool IsUnc(const String& FileName) {
  return FileName.view().starts_with(u"\\\\");
}

String Element(DynamicString& s, const String& delimiter, int32_t position) {
  return s.ExtractElement(delimiter, position).Value();
}

// Rewrites \\server\share\rest in place as \\server\share:\rest or x:\rest.
void RewriteUnc(DynamicString& s, UncForm form) {
  std::u16string drive = u"x:\\";
  if (form == UncForm::kShareAsDrive) {
    const String server = Element(s, kBackslash, 3);
    const String share = Element(s, kBackslash, 4);
    drive = u"\\\\" + server.ToU16() + u"\\" + share.ToU16() + u":\\";
  }
  // Two empty elements, the server and the share.
  for (int k = 0; k < 4; ++k) s.DeleteElement(kBackslash, 1);
  s.Prefix(String(std::move(drive)));
}

DynamicString Load(const String& FileName, UncForm form) {
  DynamicString s;
  s.SetValue(FileName);
  if (form != UncForm::kAsIs && IsUnc(FileName)) RewriteUnc(s, form);
  return s;
}

// A colon anywhere but at the first character.
bool HasColon(const DynamicString& s) {
  return s.Find(u":", 0, s.Length()) >= 1;
}

bool StartsInMyDocuments(DynamicString& s) {
  return internal::LowerCase(Element(s, kBackslash, 1).view()) == u"my documents";
}

// Element `position` by ":" of the documents folder: 1 its drive, 2 the rest.
String DocumentsPart(int32_t position) {
  DynamicString folder;
  folder.SetValue(Functions::GetMyDocumentsPath());
  return Element(folder, u":", position);
}

String WithTrailingBackslash(const String& path) {
  if (path.empty() || path.view().ends_with(u'\\')) return path;
  return String(path.ToU16() + u"\\");
}

// The drive, the path and the full path of a "my documents" name.
String DocumentsDrive() {
  return platform::PathsHaveDriveLetters() ? DocumentsPart(1) : String();
}
String DocumentsPath() {
  if (!platform::PathsHaveDriveLetters()) return Functions::GetMyDocumentsPath();
  return WithTrailingBackslash(DocumentsPart(2));
}
String DocumentsFullPath() {
  if (!platform::PathsHaveDriveLetters()) return Functions::GetMyDocumentsPath();
  return WithTrailingBackslash(Functions::GetMyDocumentsPath());
}

// The text after the last backslash, or the whole file name.
String LastOf(DynamicString& s) {
  return Element(s, kBackslash, s.CountElements(kBackslash));
}

String DriveOf(DynamicString& s, bool unc) {
  if (HasColon(s)) {
    const String drive = Element(s, u":", 1);
    if (!unc && drive.Len() != 1) return String();
    if (internal::IsNumeric(drive.view())) return String();  // 1:\x has no drive
    return drive;
  }
  if (StartsInMyDocuments(s)) return DocumentsDrive();
  return String();
}

// The folders between the drive and `last`. The folders written after
// "my documents" are not added: that form always names the folder itself.
String PathOf(DynamicString& s, const String& last) {
  if (HasColon(s)) {
    const String head = s.Extract(0, s.Length() - last.Len());
    return WithTrailingBackslash(Functions::Field(head, u":", 2, 1));
  }
  if (StartsInMyDocuments(s)) return DocumentsPath();
  return String();
}

// Element m + offset by "." of `last`, where m is its count by ".": offset 0
// is the extension, -1 the name before it. Only the part just before the
// extension is the name (archive.tar.gz gives tar), and a name without a dot
// is both its own name and its own extension (element 0 and element 1).
String DotElement(const String& last, int32_t offset) {
  DynamicString name;
  name.SetValue(last);
  return Element(name, u".", name.CountElements(u".") + offset);
}

}  // namespace

String Functions::ParseGetDrive(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetDrive", [&] {
    if (FileName.empty()) return String();
    DynamicString s = Load(FileName, UncForm::kShareAsDrive);
    return DriveOf(s, IsUnc(FileName));
  });
}

String Functions::ParseGetPath(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetPath", [&] {
    if (FileName.empty()) return String();
    DynamicString s = Load(FileName, UncForm::kDummyDrive);
    const int32_t n = s.CountElements(kBackslash);
    if (n == 1) return String();
    return PathOf(s, Element(s, kBackslash, n));
  });
}

String Functions::ParseGetFullPath(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetFullPath", [&] {
    if (FileName.empty()) return String();
    // No UNC form here: a UNC name has no colon and an empty first
    // folder, so it has no full path.
    DynamicString s = Load(FileName, UncForm::kAsIs);
    const String last = LastOf(s);
    if (HasColon(s)) return WithTrailingBackslash(s.Extract(0, s.Length() - last.Len()));
    if (StartsInMyDocuments(s)) return DocumentsFullPath();
    return String();
  });
}

String Functions::ParseGetFileName(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetFileName", [&] {
    if (FileName.empty()) return String();
    DynamicString s = Load(FileName, UncForm::kAsIs);
    return DotElement(LastOf(s), -1);
  });
}

String Functions::ParseGetFullFileName(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetFullFileName", [&] {
    if (FileName.empty()) return String();
    DynamicString s = Load(FileName, UncForm::kAsIs);
    return LastOf(s);
  });
}

String Functions::ParseGetExtension(const String& FileName) {
  return Trap(u"CRVLIB.Functions::ParseGetExtension", [&] {
    if (FileName.empty()) return String();
    DynamicString s = Load(FileName, UncForm::kAsIs);
    return DotElement(LastOf(s), 0);
  });
}

void Functions::ParseFileName(const String& FileName, String& Drive, String& Path, String& Name,
                              String& Extension) {
  Trap(u"CRVLIB.Functions::ParseFileName", [&] {
    if (FileName.empty()) return;
    // The name and extension come from the file name as written, as in
    // ParseGetFileName; the drive and the folders from the share form, which
    // gives the same folders as x:\ does.
    const bool unc = IsUnc(FileName);
    DynamicString s = Load(FileName, UncForm::kAsIs);
    const String last = LastOf(s);
    if (unc) RewriteUnc(s, UncForm::kShareAsDrive);
    const int32_t n = s.CountElements(kBackslash);
    String drive = DriveOf(s, unc);
    // Unlike ParseGetPath, a file name without any backslash gets the
    // root as its path when it has a drive (C:file.txt gives \), on purpose.
    String path =
        n == 1 ? String(drive.empty() ? u"" : u"\\") : PathOf(s, Element(s, kBackslash, n));
    String name = DotElement(last, -1);
    String extension = DotElement(last, 0);
    // Written only now: FileName may be one of the outputs.
    Drive = std::move(drive);
    Path = std::move(path);
    Name = std::move(name);
    Extension = std::move(extension);
  });
}

// The documents folder, from the platform; there is deliberately no trap
// here, so anything raised reaches the caller as it was raised.
String Functions::GetMyDocumentsPath() {
  return internal::TrapForeign(u"CRVLIB.Functions::GetMyDocumentsPath",
                               [] { return String::FromUtf8(platform::DocumentsFolder()); });
}

}  // namespace crvlib
