#include "core/prefs/prefer.h"

#include "core/base/appinfo.h"
#include "core/base/clock.h"
#include "core/base/uitexts.h"
#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QFileInfo>

namespace {
constexpr int MarkerOffset = 0;
constexpr int DateOffset = 2;
constexpr int MailClientOffset = 4188;
constexpr int SearchEngineFileOffset = 13469;
constexpr qint16 True = -1;

using Kind = Prefer::Field::Kind;

Prefer::Field text(
    const char *name, int offset, int width, QString Prefer::*member, bool trimmed = true)
{
    return {name, Kind::Text, offset, width, trimmed, member, nullptr};
}
Prefer::Field number(const char *name, int offset, qint16 Prefer::*member)
{
    return {name, Kind::Number, offset, 2, false, nullptr, member};
}
Prefer::Field password(const char *name, int offset, QString Prefer::*member)
{
    return {name, Kind::Password, offset, 200, true, member, nullptr};
}
} // namespace

Prefer &prefer()
{
    static Prefer instance;
    return instance;
}

const QList<Prefer::Field> &Prefer::fields()
{
    static const QList<Field> table = {
        text("HomeUrl", 22, 2083, &Prefer::m_HomeUrl),
        text("HomeTitle", 15552, 20, &Prefer::m_HomeTitle),
        text("SearchEngine", 2105, 2083, &Prefer::m_SearchEngine),
        text("SearchEngineFile", SearchEngineFileOffset, 2083, &Prefer::m_SearchEngineFile),
        text("MailClient", MailClientOffset, 2083, &Prefer::m_MailClient),
        number("StatusBar", 20, &Prefer::m_StatusBar),
        number("TabStrip", 6275, &Prefer::m_TabStrip),
        number("TabButton", 13455, &Prefer::m_TabButton),
        number("TabFontBold", 13457, &Prefer::m_TabFontBold),
        number("TabAlign", 13459, &Prefer::m_TabAlign),
        number("StartBrowser", 10, &Prefer::m_StartBrowser),
        number("LoadOption", 6277, &Prefer::m_LoadOption),
        // These three keep the blanks of their full width when read.
        text("Group", 6279, 200, &Prefer::m_Group, false),
        text("GroupFile", 6479, 2083, &Prefer::m_GroupFile, false),
        text("Layout", 8562, 2083, &Prefer::m_Layout, false),
        number("Adresszeile", 6273, &Prefer::m_Adresszeile),
        number("Toolbar", 6271, &Prefer::m_Toolbar),
        number("HistoryRows", 12, &Prefer::m_HistoryRows),
        number("MdiWidth", 14, &Prefer::m_MdiWidth),
        number("MdiHeight", 16, &Prefer::m_MdiHeight),
        number("MdiState", 18, &Prefer::m_MdiState),
        number("AllowOpenWin", 13461, &Prefer::m_AllowOpenWin),
        number("AllowResizeWin", 13463, &Prefer::m_AllowResizeWin),
        number("AllowWinInBack", 13465, &Prefer::m_AllowWinInBack),
        number("AllowWinRef", 13467, &Prefer::m_AllowWinRef),
        text("MailSrv1", 10645, 250, &Prefer::m_MailSrv1),
        text("MailSrv2", 11347, 250, &Prefer::m_MailSrv2),
        text("MailSrv3", 12049, 250, &Prefer::m_MailSrv3),
        text("MailSrv4", 12751, 250, &Prefer::m_MailSrv4),
        text("User1", 10895, 250, &Prefer::m_User1),
        text("User2", 11597, 250, &Prefer::m_User2),
        text("User3", 12299, 250, &Prefer::m_User3),
        text("User4", 13001, 250, &Prefer::m_User4),
        password("Pwd1", 11145, &Prefer::m_Pwd1),
        password("Pwd2", 11847, &Prefer::m_Pwd2),
        password("Pwd3", 12549, &Prefer::m_Pwd3),
        password("Pwd4", 13251, &Prefer::m_Pwd4),
        number("EnableMailCheck1", 11345, &Prefer::m_EnableMailCheck1),
        number("EnableMailCheck2", 12047, &Prefer::m_EnableMailCheck2),
        number("EnableMailCheck3", 12749, &Prefer::m_EnableMailCheck3),
        number("EnableMailCheck4", 13451, &Prefer::m_EnableMailCheck4),
        number("CheckIntervall", 13453, &Prefer::m_CheckIntervall),
    };
    return table;
}

const Prefer::Field *Prefer::field(const QString &name)
{
    for (const Field &f : fields()) {
        if (name == QLatin1String(f.name))
            return &f;
    }
    return nullptr;
}

Prefer::Prefer()
{
    resetToDefaults();
}

QString Prefer::defaultHomeUrl()
{
    return QStringLiteral("vantrell://welcome/");
}

QString Prefer::defaultSearchEngine()
{
    return QStringLiteral("https://duckduckgo.com/?q=%s");
}

void Prefer::resetToDefaults()
{
    for (const Field &f : fields()) {
        if (f.text)
            this->*f.text = QString();
        else
            this->*f.number = 0;
    }
    m_HomeUrl = defaultHomeUrl();
    m_SearchEngine = defaultSearchEngine();
    m_SearchEngineFile = AppInfo::sharedFile(uiText(1506));
    m_StatusBar = 1;
    m_TabStrip = True;
    m_TabButton = True;
    m_TabAlign = 1;
    m_StartBrowser = True;
    m_LoadOption = 1;
    m_Adresszeile = True;
    m_Toolbar = True;
    m_HistoryRows = 50;
    m_MdiWidth = 10485;
    m_MdiHeight = 7470;
    m_AllowOpenWin = True;
    m_AllowResizeWin = True;
    m_CheckIntervall = 5;
    m_reservedDate = AutomationDate::fromDateTime(Clock::now());
}

QString Prefer::scramble(const QString &clear, bool *storable)
{
    bool ok = true;
    QString out;
    out.reserve(clear.size());
    for (qsizetype i = 0; i < clear.size(); ++i) {
        const int code = clear.at(i).unicode() + (i % 2 == 0 ? -15 : 15);
        if (code < 0 || code > 255)
            ok = false;
        out.append(QChar(static_cast<char16_t>(qBound(0, code, 255))));
    }
    if (storable)
        *storable = ok;
    return out;
}

QString Prefer::unscramble(const QString &stored, bool *ok)
{
    *ok = true;
    QString out;
    out.reserve(stored.size());
    for (qsizetype i = 0; i < stored.size(); ++i) {
        const int code = stored.at(i).unicode() + (i % 2 == 0 ? 15 : -15);
        if (code < 0 || code > 255) {
            *ok = false;
            return {};
        }
        out.append(QChar(static_cast<char16_t>(code)));
    }
    return out;
}

QByteArray Prefer::toRecord()
{
    m_unstorablePasswords.clear();
    RecordWriter record(RecordLength);
    record.putInt16(MarkerOffset, True);
    record.putDouble(DateOffset, m_reservedDate);
    int account = 0;
    for (const Field &f : fields()) {
        if (f.kind == Kind::Number) {
            record.putInt16(f.offset, this->*f.number);
            continue;
        }
        if (f.kind == Kind::Text) {
            record.putText(f.offset, f.width, this->*f.text);
            continue;
        }
        ++account;
        // A password is stored only when the next load gives back exactly it;
        // otherwise its field stays blank and the caller is told.
        bool storable = false;
        const QString clear = m_passwordsInSecretStore ? QString() : this->*f.text;
        const QString stored = scramble(clear, &storable);
        const QByteArray bytes = RecordCodec::encodeText(stored, f.width);
        bool readable = false;
        const QString back
            = unscramble(RecordCodec::decodeText(bytes, RecordCodec::Trim::Blanks), &readable);
        if (storable && readable && back == clear) {
            record.putText(f.offset, f.width, stored);
        } else {
            record.putText(f.offset, f.width, QString());
            m_unstorablePasswords.append(account);
        }
    }
    return record.bytes();
}

bool Prefer::SavePref(const QString &path)
{
    m_lastError.clear();
    return RecordFile::writeBytes(path, toRecord(), &m_lastError);
}

bool Prefer::isValidRecord(const QByteArray &record) const
{
    const RecordReader reader(record, RecordLength);
    return reader.int16(MarkerOffset) != 0 && reader.byteAt(MailClientOffset) != 0
        && reader.byteAt(SearchEngineFileOffset) != 0;
}

void Prefer::readRecord(const QByteArray &record, bool *passwordsOk)
{
    *passwordsOk = true;
    const RecordReader reader(record, RecordLength);
    m_reservedDate = reader.float64(DateOffset);
    for (const Field &f : fields()) {
        if (f.kind == Kind::Number) {
            this->*f.number = reader.int16(f.offset);
            continue;
        }
        const QString value = reader.text(
            f.offset, f.width, f.trimmed ? RecordCodec::Trim::Blanks : RecordCodec::Trim::None);
        if (f.kind == Kind::Text) {
            this->*f.text = value;
            continue;
        }
        bool ok = false;
        this->*f.text = unscramble(value, &ok);
        if (!ok)
            *passwordsOk = false;
    }
}

Prefer::LoadResult Prefer::LoadPref(const QString &path)
{
    m_movedAsidePath.clear();
    m_lastError.clear();
    QFile file(path);
    QByteArray record;
    if (file.open(QIODevice::ReadOnly))
        record = file.read(RecordLength);
    file.close();

    if (isValidRecord(record)) {
        bool passwordsOk = true;
        readRecord(record, &passwordsOk);
        return passwordsOk ? LoadResult::Loaded : LoadResult::OldFormat;
    }

    LoadResult result = LoadResult::CreatedFresh;
    if (QFileInfo(path).size() > 0) {
        m_movedAsidePath = RecordFile::moveAside(path);
        result = LoadResult::ReplacedInvalid;
    }
    resetToDefaults();
    SavePref(path);
    return result;
}

QString Prefer::valueText(const Field &f) const
{
    return f.number ? QString::number(this->*f.number) : this->*f.text;
}

bool Prefer::setValueText(const Field &f, const QString &value)
{
    if (f.text) {
        this->*f.text = value;
        return true;
    }
    bool ok = false;
    const int number = value.toInt(&ok);
    if (!ok || number < -32768 || number > 32767)
        return false;
    this->*f.number = static_cast<qint16>(number);
    return true;
}
