#include "app/backup_script.h"

#include "base/text.h"

namespace mact {
namespace {

// The doubled separator after "data" occurs nowhere else in the line, since the folders have none. What
// stands before the middle is therefore the one folder, and what stands after it the other, whatever quotes,
// blanks or line breaks are in their names. The "." keeps line breaks at the end, which $( ) drops.
//
// The time of a copy is that of the file where the target's file system lets it be set.
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

/// In a script of Windows "%PATH%" is what that variable holds, also between quotes, and "%%" is a percent
/// sign. So those of a folder's name are doubled there.
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
    // The separator is doubled on purpose: CopyingProgram finds the two folders by it.
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
