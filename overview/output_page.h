#pragma once

#include "base/app_context.h"
#include "base/result.h"

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>

namespace mact {

/// What the overview's own pages have in common: HTML in UTF-8 with CR LF, for screen and paper, without
/// scripts and other files. The five reports look different.

/// UTF-8 text as part of a page. A control character becomes "?".
std::string HtmlText(std::string_view utf8);
/// The same from code-page text, without the spaces around it.
std::string HtmlOfCodePage(std::string_view codePageText);

/// Everything up to the page's content, which PageEnd ends. `title` is UTF-8.
std::string PageStart(std::string_view title);
/// The statements on all figures, and the end.
std::string PageEnd();

/// The folder of these names below the program folder. Creates what is missing of it.
Result<std::filesystem::path> OutputFolder(const AppContext& app, std::initializer_list<std::string> names);
} // namespace mact
