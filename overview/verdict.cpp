#include "overview/verdict.h"

#include "overview/answers.h"
#include "overview/attention.h"
#include "overview/file_damage.h"
#include "overview/outlook.h"

namespace mact {

bool VerdictReader::Finish(std::string line) {
    m_line = std::move(line);
    m_next = Next::Nothing;
    m_shop.reset();
    m_records = {};
    return true;
}

bool VerdictReader::Fail(const Failure& failure) {
    m_states.clear();
    return Finish(SentenceOf(failure));
}

bool VerdictReader::Begin(const AppContext& app) {
    const bool isSameCompany = app.CurrentCompanyId == m_companyId;
    m_companyId = app.CurrentCompanyId;
    if (!isSameCompany) m_line.clear();
    if (m_companyId == 0) return Finish({});
    std::vector<std::filesystem::path> files = ShopFiles(app);
    files.push_back(OverviewOptionsFile(app));
    Result<FileStates> states = ReadStates(app.Files, files);
    if (isSameCompany && states && *states == m_states) return m_next != Next::Nothing;
    if (!states) return Fail(states.error());
    m_states = std::move(*states);
    m_next = Next::Read;
    return true;
}

bool VerdictReader::Step(const AppContext& app) {
    switch (m_next) {
    case Next::Read: {
        Result<OverviewOptions> options = ReadOverviewOptions(app);
        if (!options) return Fail(options.error());
        Result<ShopRecords> records = ReadShopRecords(app);
        if (!records) return Fail(records.error());
        m_options = std::move(*options);
        m_records = std::move(*records);
        m_next = Next::Look;
        return false;
    }
    case Next::Look: {
        const Result<std::vector<std::string>> damages = FindFileDamage(app);
        if (!damages) return Fail(damages.error());
        m_damages = damages->size();
        m_next = Next::Prepare;
        return false;
    }
    case Next::Prepare:
        m_shop = std::make_unique<ShopFigures>(m_records, m_options.Start);
        m_next = Next::Calculate;
        return false;
    case Next::Calculate: {
        const std::optional<MonthNumber> newest = m_shop->NewestUse();
        if (!newest) return Finish(NewestUseText(*m_shop));
        // As many as the window shows, but for kept packs, which take long to compare.
        const std::size_t attention = FindAttention(*m_shop, *newest, m_companyId).size() + m_damages +
                                      m_options.NotUnderstood.size() +
                                      (MonthOverIfUseGoesOn(*m_shop) ? 1 : 0);
        return Finish(VerdictLine(m_shop->At(*newest), attention));
    }
    case Next::Nothing:
        break;
    }
    return true;
}
} // namespace mact
