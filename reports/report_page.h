#pragma once

#include "base/app_context.h"
#include "base/result.h"
#include "reports/report_period.h"

#include <string>
#include <string_view>

namespace mact {

/// What the reports' pages have in common. Pages are code-page text; names go into them unescaped.

/// The text above a report's table.
struct ReportHeading {
    std::string CompanyName{};
    std::string CompanyLocation{};
    std::string Start{}; ///< MM/YYYY
    std::string End{};   ///< MM/YYYY
};
ReportHeading HeadingOf(const AppContext& app, const ReportMonths& months);

/// The company's lines. Opens the centred block that contains the rest of the page.
std::string CompanyHtml(const ReportHeading& heading);
/// The report's name and the line below it.
std::string TitleHtml(std::string_view title, std::string_view periodHtml);
/// "Materials used from 04/2007 to 03/2008", with the months underlined.
std::string MaterialsUsedHtml(const ReportHeading& heading);
/// "From 04/2007 To 03/2008", with the months underlined.
std::string FromToHtml(const ReportHeading& heading);

inline constexpr std::string_view TableStartHtml =
    "<table cellspacing='0' cellpadding='3' border='1' bordercolor='black'>";
inline constexpr std::string_view NoRecordFoundRowHtml =
    "<tr><td colspan='5' align='center'><font face='Verdana' size='1'><b><br>No record "
    "found</br></b></font></td></tr>";
inline constexpr std::string_view PageEndHtml = "</table></div></body></html>";

/// The Failure for a sum or power that is too large or not a number. `doing` is as in "add up the amounts".
Failure CannotCalculate(std::string_view doing);

/// The Failure for a number in a damaged file that no page can show: infinite or not a number. `what` is as
/// in "the HAP content of the material"; `name` is code-page text.
Failure CannotShow(std::string_view what, std::string_view name);

/// How a failure names a material: the material "GC-110". UTF-8.
std::string MaterialNamed(std::string_view customId);
} // namespace mact
