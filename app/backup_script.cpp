#include "app/backup_script.h"

#include "base/text.h"

namespace mact {
namespace {

// The doubled separator after "data" occurs nowhere else in the line, since the folders have none. So the
// text before the middle is one folder and the text after it the other, whatever quotes, blanks or line
// breaks their names contain. The "." protects line breaks at the end, which $( ) would drop.
//
// Each file is copied and compared through one open file (8), since its name may come to stand for another.
// A copy gets the time of its file if the target's file system allows it; if not, that is ignored. A file
// system that cannot flush a folder has everything flushed instead.
//
// The pattern in the loop finds nothing in a folder that cannot be read, hence the count.
constexpr const char* CopyingProgram = R"sh(
middle='/data//*.*" "'
end='/*.*"'
line=$(cat -- "$1" && echo .) || exit 1
line=${line#'copy "'}
from=${line%%"$middle"*}/data
to=${line#*"$middle"}
to=${to%"$end"*}
note=${1%/*}/backup.mact.note
note_check() {
  { cksum <"$note"; } 2>/dev/null
}
noted=$(note_check)
line_end=$(printf '\r\n.')
line_end=${line_end%.}
failures=

fail() {
  sentence="Cannot $1: $2."
  printf '%s\n' "$sentence" >&2
  failures=$failures$sentence$line_end
}
fail_file() {
  fail "back up the file \"$from/${1#./}\"" "$2"
}

# Prints a file's type and permissions, or why they are unknown.
mode() {
  LC_ALL=C stat -c %f "$@" 2>&1
}
is_gone() {
  case $(mode -- "$1") in *': No such file or directory') true ;; *) false ;; esac
}

# Copies a file, whatever has its name in the set: were that a link to the file itself, cp would refuse. A
# copy that is not whole is removed.
copy() (
  exec 8<"$1"
  rm -f -- "$to/$1"
  if cp -T -- /dev/fd/8 "$to/$1" && sync -- "$to/$1" && cmp -- /dev/fd/8 "$to/$1"; then
    touch -c -r /dev/fd/8 -- "$to/$1" 2>/dev/null
    exit 0
  fi
  rm -f -- "$to/$1"
  exit 1
)

# Only the program itself makes undo files, so what is not a regular file is none. One of an earlier attempt
# would not fit the data file.
copy_undo_file() {
  case $(mode -- "$1") in
  8???) copy "$1" || is_gone "$1" ;;
  *': No such file or directory') rm -f -- "$to/$1" ;;
  ????) ;;
  *) mode -- "$1"; false ;;
  esac
}

# A data file and its undo file belong together, so both are copied while the data file is locked.
copy_data_file() (
  exec 9<"$1"
  if ! flock -w 2 9; then
    echo 'another running copy of the program is working with it'
    exit 1
  fi
  copy "$1" && copy_undo_file "$1.mact.undo"
)

cd -- "$from/" || exit 1
[ ! "$to" -ef . ] || exit 1 # its files would be replaced with their own copies
listed=$(LC_ALL=C find . -mindepth 1 -maxdepth 1 ! -name '*.mact.tmp' ! -name '*.mact.undo' -printf x 2>&1) ||
  fail "read the folder \"$from\"" "$listed"
seen=
for file in ./* ./.*; do
  case $file in
  ./. | ./.. | *.mact.tmp) continue ;;
  *.mact.undo)
    is_gone "${file%.mact.undo}" || continue
    reason=$(copy_undo_file "$file" 2>&1) || fail_file "$file" "$reason"
    continue
    ;;
  esac
  [ "$file" = './*' ] && is_gone "$file" && continue
  seen=${seen}x
  kind=$(mode -L -- "$file")
  case $kind in
  8???) reason=$(copy_data_file "$file" 2>&1) || fail_file "$file" "$reason" ;;
  ????) ;;
  *) fail_file "$file" "$kind" ;;
  esac
done
if [ -z "$failures" ] && [ ${#seen} -lt ${#listed} ]; then
  fail "read the folder \"$from\"" 'not all of its files were found'
fi

if [ -n "$failures" ]; then
  rm -f -- "$to/incomplete.txt"
  (set -C && printf %s "$failures" >"$to/incomplete.txt" && sync -- "$to/incomplete.txt") ||
    rm -f -- "$to/incomplete.txt"
elif [ ! -e ./incomplete.txt ]; then
  rm -f -- "$to/incomplete.txt"
fi
sync -- "$to" "$to/.." 2>/dev/null || sync
[ -z "$failures" ] || exit 1
[ "$(note_check)" != "$noted" ] || rm -f -- "$note" # another backup may have begun
)sh";

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
    start.Script = script;
    start.HasHiddenWindow = true;
    return start;
}
} // namespace mact
