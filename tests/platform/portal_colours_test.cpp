#include "platform/portal_colours.h"

#include <QDBusContext>
#include <QDBusError>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace mact {
namespace {

constexpr int WellBelowTheTimeoutMs = 10'000; // a call that waits does so for 25 seconds

/// A bus of its own in a temporary folder, on which nobody else is.
class PrivateBus {
public:
    PrivateBus() {
        const QString path = m_folder.filePath(QStringLiteral("bus"));
        QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly)) qFatal("The bus cannot be configured");
        configuration.write("<busconfig><type>session</type><listen>unix:path=" + path.toUtf8() +
                            "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                            "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/><allow own=\"*\"/>"
                            "</policy></busconfig>");
        configuration.close();
        m_daemon.start(QStringLiteral(MACT_DBUS_DAEMON),
                       {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + configuration.fileName()});
        if (!m_daemon.waitForReadyRead()) qFatal("The bus does not start");
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        for (const QString& name : m_names)
            QDBusConnection::disconnectFromBus(name);
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    QDBusConnection Connect(const char* name) {
        m_names << QString::fromLatin1(name);
        QDBusConnection connection = QDBusConnection::connectToBus(m_address, m_names.last());
        if (!connection.isConnected()) qFatal("There is no connection to the bus");
        return connection;
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

/// Stands in for the desktop portal.
class Portal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    uint Scheme = 0;
    bool Answers = true;
    bool IsNew = false; ///< without Read
    int Questions = 0;

    void Open(QDBusConnection bus) {
        if (!bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) ||
            !bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")))
            qFatal("The portal cannot be opened");
    }

public slots:
    QDBusVariant Read(const QString& group, const QString& key) {
        ++Questions;
        if (!Answers) setDelayedReply(true);
        if (IsNew) sendErrorReply(QDBusError::UnknownMethod);
        return QDBusVariant(QVariant::fromValue(Value(group, key)));
    }
    QDBusVariant ReadOne(const QString& group, const QString& key) { return Value(group, key); }

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusVariant Value(const QString& group, const QString& key) {
        const bool isKnown =
            group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
        if (!isKnown) sendErrorReply(QDBusError::InvalidArgs);
        return QDBusVariant(Scheme);
    }
};

void Change(Portal& portal, const char* group, const char* key, uint scheme) {
    emit portal.SettingChanged(QString::fromLatin1(group), QString::fromLatin1(key), QDBusVariant(scheme));
}

} // namespace

class portal_colours_test : public QObject {
    Q_OBJECT

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<Portal> m_portal;

    QDBusConnection OpenPortal() {
        m_portal->Open(m_bus->Connect("portal"));
        return m_bus->Connect("program");
    }

private slots:
    void init() {
        m_bus = std::make_unique<PrivateBus>();
        m_portal = std::make_unique<Portal>();
    }
    void cleanup() {
        m_portal.reset();
        m_bus.reset();
    }

    void The_portals_answer_is_heard_data() {
        QTest::addColumn<uint>("scheme");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<bool>("isDark");
        QTest::newRow("dark") << 1U << false << true;
        QTest::newRow("light") << 2U << false << false;
        QTest::newRow("dark, of a new portal") << 1U << true << true;
        QTest::newRow("light, of a new portal") << 2U << true << false;
    }
    void The_portals_answer_is_heard() {
        QFETCH(const uint, scheme);
        QFETCH(const bool, isNew);
        QFETCH(const bool, isDark);
        m_portal->Scheme = scheme;
        m_portal->IsNew = isNew;
        const PortalColours colours(OpenPortal());
        QTRY_VERIFY(colours.Asked());
        QCOMPARE(*colours.Asked(), isDark ? Colours::Dark : Colours::Light);
    }

    void No_preference_is_no_answer_data() {
        QTest::addColumn<uint>("scheme");
        QTest::newRow("none") << 0U;
        QTest::newRow("not known") << 7U;
    }
    void No_preference_is_no_answer() {
        QFETCH(const uint, scheme);
        m_portal->Scheme = scheme;
        const PortalColours colours(OpenPortal());
        const QSignalSpy changes(&colours, &DesktopColours::Changed);
        QTRY_COMPARE(m_portal->Questions, 1);
        Change(*m_portal, "org.freedesktop.appearance", "color-scheme", 1); // comes after the answer
        QTRY_VERIFY(colours.Asked());
        QCOMPARE(changes.size(), 1);
    }

    void A_change_is_heard_while_the_program_runs() {
        const PortalColours colours(OpenPortal());
        QTRY_COMPARE(m_portal->Questions, 1);
        Change(*m_portal, "org.freedesktop.appearance", "color-scheme", 1);
        QTRY_COMPARE(colours.Asked(), std::optional(Colours::Dark));
        Change(*m_portal, "org.freedesktop.appearance", "accent-color", 2);
        Change(*m_portal, "org.example", "color-scheme", 2);
        Change(*m_portal, "org.freedesktop.appearance", "color-scheme", 0);
        QTRY_VERIFY(!colours.Asked());
    }

    void Nothing_waits_for_a_portal_that_never_answers() {
        m_portal->Answers = false;
        const QDBusConnection bus = OpenPortal();
        QElapsedTimer timer;
        timer.start();
        {
            const PortalColours colours(bus);
            QTRY_COMPARE(m_portal->Questions, 1);
            QVERIFY(!colours.Asked());
        }
        QVERIFY(timer.elapsed() < WellBelowTheTimeoutMs);
    }

    void Without_a_portal_there_is_no_answer() {
        const QDBusConnection bus = m_bus->Connect("program");
        QElapsedTimer timer;
        timer.start();
        const PortalColours colours(bus);
        QVERIFY(!colours.Asked());
        QVERIFY(timer.elapsed() < WellBelowTheTimeoutMs);
    }

    void Without_a_bus_there_is_no_answer() {
        const PortalColours colours(QDBusConnection::connectToBus(
            QStringLiteral("unix:path=/nonexistent/bus"), QStringLiteral("no bus")));
        QCoreApplication::processEvents();
        QVERIFY(!colours.Asked());
        QDBusConnection::disconnectFromBus(QStringLiteral("no bus"));
    }

    void A_portal_that_comes_later_is_heard_when_something_changes() {
        const PortalColours colours(m_bus->Connect("program"));
        m_portal->Open(m_bus->Connect("portal"));
        Change(*m_portal, "org.freedesktop.appearance", "color-scheme", 1);
        QTRY_COMPARE(colours.Asked(), std::optional(Colours::Dark));
    }

    void Without_the_address_of_a_bus_none_is_started() {
        for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"})
            qunsetenv(name);
        QCOMPARE(AskDesktop()->metaObject()->className(), "mact::DesktopColours");
    }
};
} // namespace mact

QTEST_MAIN(mact::portal_colours_test)
#include "portal_colours_test.moc"
