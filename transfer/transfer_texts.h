#pragma once

#include <string_view>

namespace mact {

/// The texts of the error logs and summaries. "sic" marks a spelling that is odd on purpose.
namespace TransferTexts {

// Appended to a line with the wrong number of fields.
inline constexpr std::string_view InvalidFieldCount = "    ***** Invalid number of delimited fields ******";

// Around any other rejected line.
inline constexpr std::string_view RecordNumber = "REC#  : ";
inline constexpr std::string_view Record = "RECORD: ";

// Around the length of a line of which only the beginning is logged, and why that line was rejected.
inline constexpr std::string_view BeginningOf = "... (the beginning of a line of ";
inline constexpr std::string_view BytesOfLine = " bytes)";
inline constexpr std::string_view LineTooLong =
    "ERROR : Line is too long. It can have 16777216 bytes at most.";

inline constexpr std::string_view MaterialExists = "ERROR : Material with this id already exsists."; // sic
inline constexpr std::string_view DescriptionEmpty = "ERROR : Description field cant not be empty."; // sic
inline constexpr std::string_view TypeOrMethodUnknown =
    "ERROR : Invalid spelling and/or combination of material type and/or Application method.";
inline constexpr std::string_view DensityNotNumeric =
    "ERROR : Invalid density, it should be a numeric value"; // the only one without a full stop
inline constexpr std::string_view HapContentNotNumeric =
    "ERROR : Invalid HAP contents, it should be a numeric value.";
// The only one with an empty line of its own.
inline constexpr std::string_view PollutantNotNumeric =
    "ERROR : Content/Emission factor in one/many of additional pollutants is non-numeric. It should be "
    "numeric value. If there is no value please write 0.\r\n";
inline constexpr std::string_view FillerNotNumeric = "ERROR : Invalid filler, it should be a numeric value. "
                                                     "If this is not a filled risin please use 0."; // sic

inline constexpr std::string_view MaterialUnknown = "ERROR : Invalid Material ID.";
inline constexpr std::string_view MonthInvalid =
    "ERROR : Invalid Month. Month can be a numeric value between 1 to 12.";
inline constexpr std::string_view YearInvalid =
    "ERROR : Invalid year. This value shoud be a proper 4 degit year."; // sic
inline constexpr std::string_view UsageExists =
    "ERROR : Usage with this material and date already exsists."; // sic
inline constexpr std::string_view QuantityNotNumeric =
    "ERROR : Invalid Quantity. Quantity should be a proper numeric value.";
inline constexpr std::string_view UnitInvalid = "ERROR : Invalid unit. Unit can only be lbs or mgl."; // sic

// Appended to a usage record in the export's log.
inline constexpr std::string_view MaterialNotFound = "    ********* Material with this id not found ********";

inline constexpr std::string_view TotalProcessed = "Total Records Processed : ";
inline constexpr std::string_view SuccessfulImports = "Sucessful Imports : "; // sic
inline constexpr std::string_view SuccessfulExports = "Sucessful Exports : "; // sic
inline constexpr std::string_view Errors = "Errors : ";

} // namespace TransferTexts
} // namespace mact
