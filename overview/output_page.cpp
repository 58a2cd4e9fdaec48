#include "overview/output_page.h"

#include "base/text.h"
#include "overview/statements.h"

namespace mact {
namespace {

constexpr std::string_view Style =
    "body{font:10.5pt/1.4 Verdana,Arial,sans-serif;color:#111;background:#fff;max-width:62em;margin:2em auto;"
    "padding:0 1em;overflow-wrap:anywhere}\r\n"
    "h1{font-size:1.5em;margin:0}\r\n"
    "h2{font-size:1.15em;margin:1.8em 0 .4em;border-bottom:2px solid #345;break-after:avoid}\r\n"
    "h3{font-size:1em;margin:1.2em 0 .3em;break-after:avoid}\r\n"
    "p{margin:.4em 0}\r\n"
    "table{border-collapse:collapse;width:100%;font-size:.85em;margin:.4em 0}\r\n"
    "th,td{border:1px solid #99a;padding:.25em .5em;text-align:left;vertical-align:top}\r\n"
    "thead th{background:#e8ecf2;overflow-wrap:normal}\r\n"
    "tbody th{font-weight:normal}\r\n"
    "td.number{text-align:right}\r\n"
    "thead th.number{text-align:right;white-space:nowrap}\r\n"
    "table.figures{table-layout:fixed}\r\n"
    "th.label{width:24%}\r\n"
    "tr{break-inside:avoid}\r\n"
    "small{display:block;color:#555}\r\n"
    ".over{display:block;color:#a00000;font-weight:bold}\r\n"
    ".differs{display:block;color:#7a4500;font-weight:bold}\r\n"
    ".other{display:block;color:#555}\r\n"
    ".line{border-bottom:1px solid #555;height:2em}\r\n"
    ".field{display:flex;align-items:end;height:2.4em}\r\n"
    ".field span{flex:1;border-bottom:1px solid #555;margin-left:.6em}\r\n"
    ".digest{font-family:monospace;font-size:1.05em}\r\n"
    "footer{margin-top:2.5em;border-top:1px solid #99a;font-size:.8em}\r\n"
    "footer li{margin:.2em 0}\r\n"
    "@page{margin:15mm}\r\n"
    "@media print{body{margin:0;max-width:none;padding:0;font-size:9.5pt}}\r\n";

} // namespace

std::string HtmlText(std::string_view utf8) {
    std::string html;
    for (const char character : Printable(utf8)) {
        switch (character) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += character;
        }
    }
    return html;
}

std::string HtmlOfCodePage(std::string_view codePageText) {
    return HtmlText(Utf8FromCodePage(Trim(codePageText)));
}

std::string PageStart(std::string_view title) {
    std::string html = "<!DOCTYPE html>\r\n<html lang=\"en\">\r\n<head>\r\n<meta charset=\"utf-8\">\r\n"
                       "<meta name=\"viewport\" content=\"width=device-width\">\r\n<title>";
    AppendAll(html, HtmlText(title), "</title>\r\n<style>\r\n", Style, "</style>\r\n</head>\r\n<body>\r\n");
    return html;
}

std::string PageEnd() {
    std::string html = "<footer>\r\n<ol>\r\n";
    for (const std::string_view statement : OverviewStatements)
        AppendAll(html, "<li>", HtmlText(statement), "</li>\r\n");
    return html + "</ol>\r\n</footer>\r\n</body>\r\n</html>\r\n";
}

Result<std::filesystem::path> OutputFolder(const AppContext& app, std::initializer_list<std::string> names) {
    std::filesystem::path folder = app.ProgramFolder;
    for (const std::string& name : names) {
        folder /= name;
        if (IsFolderAt(folder)) continue;
        const Done created = app.Files.CreateFolder(folder);
        if (!created && !IsFolderAt(folder)) return created.error(); // another copy may have been faster
    }
    return folder;
}
} // namespace mact
