#pragma once

#include "base/app_context.h"
#include "overview/overview_options.h"
#include "overview/shop_figures.h"
#include "store/steady_reading.h"

#include <memory>
#include <optional>
#include <string>

namespace mact {

/// The main window's line on where the company stands, calculated in steps, so that the window stays alive
/// meanwhile. Creates no file, locks none and shows no message.
class VerdictReader {
public:
    /// Begins anew if the company, or the size or time of one of its files, has changed since the last line.
    /// The line of another company is emptied. Returns whether there is anything to do.
    bool Begin(const AppContext& app);
    /// Does the next step. True once the line is complete.
    bool Step(const AppContext& app);
    /// Empty without a company. UTF-8. After a failure its sentence.
    const std::string& Line() const { return m_line; }

private:
    enum class Next { Read, Look, Prepare, Calculate, Nothing };
    bool Finish(std::string line);
    /// The failure is the line; the next Begin tries again.
    bool Fail(const Failure& failure);

    Next m_next = Next::Nothing;
    std::int16_t m_companyId = 0;
    FileStates m_states{};
    OverviewOptions m_options{};
    ShopRecords m_records{};
    std::unique_ptr<ShopFigures> m_shop{}; ///< of m_records
    std::size_t m_damages = 0;             ///< of the files themselves
    std::string m_line{};
};
} // namespace mact
