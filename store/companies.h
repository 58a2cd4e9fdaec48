#pragma once

#include "base/app_context.h"
#include "base/list_lines.h"
#include "store/data_folder.h"
#include "store/record_changes.h"
#include "store/record_layout.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mact {

/// The companies and locations that this installation serves, in data/companies.talvor. One of them is
/// current, and remembered in the settings. Companies are never deleted; only adding one can be taken back.
///
/// FindCompanies and SaveCompany show a failure once (ShowError), and FindCompanies goes on as if the file
/// were empty. The others return it, but RestoreCompany looks the company up with FindCompanies.

/// Shown when the name or the location is missing.
inline constexpr std::string_view NeedsNameAndLocation =
    "You must specify Company Name and Company Location to add new company";

struct CompanyRecord {
    std::int16_t CompanyId = 0; ///< the record's own number; 0 = not stored yet
    std::string CompanyName{};
    std::string CompanyLocation{};
    bool Active = true; ///< false = never listed or found
};
inline constexpr std::tuple CompanyFields{
    Int16(&CompanyRecord::CompanyId),
    Text(&CompanyRecord::CompanyName, 250),
    Text(&CompanyRecord::CompanyLocation, 250),
    Flag(&CompanyRecord::Active),
};
inline constexpr RecordLayout CompanyLayout{504, CompanyFields};
static_assert(CompanyLayout.PackedLength() == 504); // files of earlier versions depend on it

/// A filter that is left out matches everything.
struct CompanyFilter {
    std::optional<std::int16_t> CompanyId{};
    /// Matches if the record's name occurs within it, ignoring case: Acme passes the filter Acme Boats, and
    /// an empty name passes every filter.
    std::optional<std::string> CompanyName{};
    std::optional<std::string> CompanyLocation{}; ///< compared like the name
};
/// Those that match, in file order.
Result<std::vector<CompanyRecord>> ReadCompanies(const DataFiles& data, const CompanyFilter& filter = {});
/// Fills `results` in file order and returns true; empties it and returns false if nothing matches.
bool FindCompanies(AppContext& app, const CompanyFilter& filter, std::vector<CompanyRecord>& results);

/// Overwrites company `company.CompanyId` or, if that is 0, appends a new one, and notes it, so that it can
/// be taken back.
Done StoreCompany(AppContext& app, const CompanyRecord& company);

using CompanyChange = RecordChange<CompanyRecord>;
using CompanyOutcome = ChangeOutcome<CompanyRecord>;
/// Makes all of the changes or none. One is refused if the company that it replaces is not as it was read, or
/// if it marks a company as deleted that `isUsed` says is in use, or that has records of its own by now. On
/// disk when it returns and has refused none.
Result<CompanyOutcome> ChangeCompanies(const DataFiles& data, const std::vector<CompanyChange>& changes,
                                       const RecordIsUsed& isUsed);

/// Whether it is the current company of this copy of the program or, as the settings have it, the one that
/// was selected last, by whichever copy.
Result<bool> IsCurrentCompany(AppContext& app, std::int16_t companyId);

/// Overwrites company `companyId` or, without a number, appends a new one. Returns 0 even after a failure:
/// callers find the company by listing the file again.
std::int16_t SaveCompany(AppContext& app, const std::string& name, const std::string& location,
                         std::optional<std::int16_t> companyId = {});

/// Appends a new company and returns its number.
Result<std::int16_t> AddNewCompany(const DataFiles& data, const std::string& name,
                                   const std::string& location);

/// One line per active record, "name (location)", with the identifier as item data.
void FillCompanyList(ListLines& list, const std::vector<CompanyRecord>& records);

/// Makes the company current until the program ends.
void MakeCompanyCurrent(AppContext& app, const CompanyRecord& company);

/// Makes the company current and remembers it in the settings. It is current even if the latter fails.
Done SelectCompany(AppContext& app, const CompanyRecord& company);

/// Makes the remembered company current; if it no longer exists, nothing changes. A remembered text that
/// ParseInt16 refuses is a Failure.
Done RestoreCompany(AppContext& app);
} // namespace mact
