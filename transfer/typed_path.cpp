#include "base/files.h"
#include "base/text.h"
#include "transfer/transfer.h"

namespace mact {

std::filesystem::path TypedPath(std::string_view utf8Text) {
    const std::filesystem::path asItStands = PathFromUtf8(utf8Text);
    return IsFileAt(asItStands) ? asItStands : PathFromUtf8(Trim(utf8Text));
}

} // namespace mact
