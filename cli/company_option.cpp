#include "cli/company_option.h"

#include "base/numbers.h"
#include "base/text.h"
#include "cli/record_text.h"
#include "cli/refusals.h"
#include "store/companies.h"

#include <algorithm>

namespace mact {
namespace {

bool IsWholeNumber(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string NoSuchCompany(const std::string& shown) {
    return "There is no company " + shown + '.';
}

/// A long list is cut: a sentence is to be read.
std::string ListOf(const std::vector<CompanyRecord>& companies) {
    constexpr std::size_t most = 10;
    std::string list;
    for (std::size_t index = 0; index < std::min(companies.size(), most); ++index) {
        const CompanyRecord& company = companies[index];
        list += (index == 0 ? "" : "; ") + std::to_string(company.CompanyId) + ' ' +
                Shown(company.CompanyName) + " (" + Shown(company.CompanyLocation) + ')';
    }
    if (companies.size() > most)
        list += "; and " + std::to_string(companies.size() - most) + " more, which companies lists";
    return list;
}

/// Those with that name.
std::vector<CompanyRecord> Named(const std::vector<CompanyRecord>& companies, const std::string& utf8Name) {
    const std::string name = CodePageFromUtf8(utf8Name);
    std::vector<CompanyRecord> named;
    // An empty name is a variable of a script that is not set. A character that the code page lacks has
    // become
    // "?", which is in the name of no company that is meant.
    if (Trim(name).empty() || Utf8FromCodePage(name) != utf8Name) return named;
    std::ranges::copy_if(companies, std::back_inserter(named),
                         [&](const CompanyRecord& company) { return IsSameName(company.CompanyName, name); });
    return named;
}

} // namespace

ExitStatus UseCompanyMeant(AppContext& app, const std::string& utf8Text) {
    const std::string text(Trim(utf8Text));
    if (IsWholeNumber(text)) {
        const std::optional<std::int16_t> companyId = ParseInt16(text);
        return companyId ? UseCompany(app, *companyId, false) : Refuse(app, NoSuchCompany(text));
    }
    const Result<std::vector<CompanyRecord>> companies = ReadCompanies(app);
    if (!companies) return Fail(app, companies.error());
    const std::vector<CompanyRecord> named = Named(*companies, utf8Text);
    if (named.empty())
        return Refuse(app,
                      NoSuchCompany('"' + utf8Text + '"') +
                          (companies->empty() ? std::string() : " There are: " + ListOf(*companies) + '.'));
    if (named.size() > 1)
        return Refuse(app, "There are " + std::to_string(named.size()) + " companies \"" + utf8Text +
                               "\": " + ListOf(named) + ". Name one by its number.");
    MakeCompanyCurrent(app, named.front());
    return StatusDone;
}
} // namespace mact
