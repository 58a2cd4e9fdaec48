#include "app/backup_script.h"

#include "base/text.h"

namespace mact {
namespace {

// The doubled separator after "data" occurs nowhere else in the line, since the folders have none. So the
// text before the middle is one folder and the text after it the other, whatever quotes, blanks or line
// breaks their names contain. The "." protects line breaks at the end, which $( ) would drop.
//
// A copy gets the time of its file if the target's file system allows it; if not, that is ignored.
constexpr const char* CopyingProgram = R"(
middle='/data//*.*" "'
end='/*.*"'
line=$(cat -- "$1" && echo .) || exit 1
line=${line#'copy "'}
from=${line%%"$middle"*}/data
to=${line#*"$middle"}
to=${to%"$end"*}
cd -- "$from/" || exit 1
status=0
for file in ./* ./.*; do
  [ -f "$file" ] || continue
  if reason=$(cp -- "$file" "$to/" 2>&1); then
    touch -c -r "$file" -- "$to/$file" 2>/dev/null
  else
    printf 'Cannot copy the file "%s" into the folder "%s": %s.\n' "$from/${file#./}" "$to" "$reason" >&2
    status=1
  fi
done
exit $status
)";

/// In a Windows script "%PATH%" is replaced with the variable's value, even between quotes, and "%%" is a
/// percent sign. So the percent signs in a folder's name are doubled there.
std::string WithoutVariables(const std::string& text) {
#ifdef _WIN32
    std::string doubled;
    for (const char character : text)
        doubled.append(character == '%' ? 2 : 1, character);
    return doubled;
#else
    return text;
#endif
}

} // namespace

std::string BackupLine(const std::filesystem::path& programFolder, const std::filesystem::path& target) {
    constexpr char separator = static_cast<char>(std::filesystem::path::preferred_separator);
    std::string line = "copy \"" + WithoutVariables(PathText(programFolder));
    // The separator is doubled on purpose: it is how CopyingProgram tells the two folders apart.
    line += separator + std::string("data") + separator + separator + "*.*\" \"";
    line += WithoutVariables(PathText(target)) + separator + "*.*\"";
    return line;
}

ProgramStart BackupStart(const std::filesystem::path& script) {
    ProgramStart start;
    start.Program = "/bin/sh";
    start.Arguments = {"-c", CopyingProgram, "backup", PathText(script)};
    start.CommandLine = '"' + PathText(script) + '"';
    start.HasHiddenWindow = true;
    return start;
}
} // namespace mact
