#pragma once

#include <QList>
#include <QString>

// The preferences of the program, one object per process, stored as one
// 15,572-byte record in "Pref.vtp" in the data folder.
class Prefer final
{
public:
    static constexpr int RecordLength = 15572;

    enum class LoadResult {
        Loaded, // a valid record was read
        CreatedFresh, // no usable file existed; defaults were written
        ReplacedInvalid, // an invalid file was moved aside and defaults were written
        OldFormat, // a password field cannot be unscrambled: the caller must stop
    };

    // One field of the record, in the order of the preference table.
    struct Field
    {
        enum class Kind { Text, Number, Password };
        const char *name;
        Kind kind;
        int offset;
        int width; // bytes of a text field
        bool trimmed;
        QString Prefer::*text;
        qint16 Prefer::*number;
    };
    static const QList<Field> &fields();
    static const Field *field(const QString &name);

    Prefer();

    // Reads the record from `path`; see LoadResult. `movedAsidePath()` names the
    // moved file after ReplacedInvalid.
    LoadResult LoadPref(const QString &path);
    // Writes the whole record. Returns false when the file could not be written.
    bool SavePref(const QString &path);

    // The record as SavePref writes it.
    QByteArray toRecord();
    void resetToDefaults();

    QString movedAsidePath() const { return m_movedAsidePath; }
    QString lastError() const { return m_lastError; }
    // Accounts (1..4) whose password could not be stored by the last SavePref.
    QList<int> unstorablePasswords() const { return m_unstorablePasswords; }

    // Passwords kept in the desktop's secret store are not written to the file: their
    // fields stay blank there while this object holds them in clear.
    bool passwordsInSecretStore() const { return m_passwordsInSecretStore; }
    void setPasswordsInSecretStore(bool on) { m_passwordsInSecretStore = on; }

    // The reversible character shift applied to passwords in the file.
    static QString scramble(const QString &clear, bool *storable = nullptr);
    static QString unscramble(const QString &stored, bool *ok);

    double reservedDate() const { return m_reservedDate; }
    void setReservedDate(double value) { m_reservedDate = value; }

    // Text and number properties by name, for the command-line tool.
    QString valueText(const Field &field) const;
    bool setValueText(const Field &field, const QString &value);

#define VANTRELL_TEXT_PREF(Name)                                                                   \
    QString Name() const                                                                           \
    {                                                                                              \
        return m_##Name;                                                                           \
    }                                                                                              \
    void set##Name(const QString &value)                                                           \
    {                                                                                              \
        m_##Name = value;                                                                          \
    }
#define VANTRELL_NUMBER_PREF(Name)                                                                 \
    qint16 Name() const                                                                            \
    {                                                                                              \
        return m_##Name;                                                                           \
    }                                                                                              \
    void set##Name(qint16 value)                                                                   \
    {                                                                                              \
        m_##Name = value;                                                                          \
    }

    VANTRELL_TEXT_PREF(HomeUrl)
    VANTRELL_TEXT_PREF(HomeTitle)
    VANTRELL_TEXT_PREF(SearchEngine)
    VANTRELL_TEXT_PREF(SearchEngineFile)
    VANTRELL_TEXT_PREF(MailClient)
    VANTRELL_NUMBER_PREF(StatusBar)
    VANTRELL_NUMBER_PREF(TabStrip)
    VANTRELL_NUMBER_PREF(TabButton)
    VANTRELL_NUMBER_PREF(TabFontBold)
    VANTRELL_NUMBER_PREF(TabAlign)
    VANTRELL_NUMBER_PREF(StartBrowser)
    VANTRELL_NUMBER_PREF(LoadOption)
    VANTRELL_TEXT_PREF(Group)
    VANTRELL_TEXT_PREF(GroupFile)
    VANTRELL_TEXT_PREF(Layout)
    VANTRELL_NUMBER_PREF(Adresszeile)
    VANTRELL_NUMBER_PREF(Toolbar)
    VANTRELL_NUMBER_PREF(HistoryRows)
    VANTRELL_NUMBER_PREF(MdiWidth)
    VANTRELL_NUMBER_PREF(MdiHeight)
    VANTRELL_NUMBER_PREF(MdiState)
    VANTRELL_NUMBER_PREF(AllowOpenWin)
    VANTRELL_NUMBER_PREF(AllowResizeWin)
    VANTRELL_NUMBER_PREF(AllowWinInBack)
    VANTRELL_NUMBER_PREF(AllowWinRef)
    VANTRELL_TEXT_PREF(MailSrv1)
    VANTRELL_TEXT_PREF(MailSrv2)
    VANTRELL_TEXT_PREF(MailSrv3)
    VANTRELL_TEXT_PREF(MailSrv4)
    VANTRELL_TEXT_PREF(User1)
    VANTRELL_TEXT_PREF(User2)
    VANTRELL_TEXT_PREF(User3)
    VANTRELL_TEXT_PREF(User4)
    VANTRELL_TEXT_PREF(Pwd1)
    VANTRELL_TEXT_PREF(Pwd2)
    VANTRELL_TEXT_PREF(Pwd3)
    VANTRELL_TEXT_PREF(Pwd4)
    VANTRELL_NUMBER_PREF(EnableMailCheck1)
    VANTRELL_NUMBER_PREF(EnableMailCheck2)
    VANTRELL_NUMBER_PREF(EnableMailCheck3)
    VANTRELL_NUMBER_PREF(EnableMailCheck4)
    VANTRELL_NUMBER_PREF(CheckIntervall)

#undef VANTRELL_TEXT_PREF
#undef VANTRELL_NUMBER_PREF

    // The default start page that ships with the program, and the default search page.
    static QString defaultHomeUrl();
    static QString defaultSearchEngine();

private:
    void readRecord(const QByteArray &record, bool *passwordsOk);
    bool isValidRecord(const QByteArray &record) const;

    QString m_HomeUrl, m_HomeTitle, m_SearchEngine, m_SearchEngineFile, m_MailClient;
    qint16 m_StatusBar = 0, m_TabStrip = 0, m_TabButton = 0, m_TabFontBold = 0, m_TabAlign = 0;
    qint16 m_StartBrowser = 0, m_LoadOption = 0;
    QString m_Group, m_GroupFile, m_Layout;
    qint16 m_Adresszeile = 0, m_Toolbar = 0, m_HistoryRows = 0;
    qint16 m_MdiWidth = 0, m_MdiHeight = 0, m_MdiState = 0;
    qint16 m_AllowOpenWin = 0, m_AllowResizeWin = 0, m_AllowWinInBack = 0, m_AllowWinRef = 0;
    QString m_MailSrv1, m_MailSrv2, m_MailSrv3, m_MailSrv4;
    QString m_User1, m_User2, m_User3, m_User4;
    QString m_Pwd1, m_Pwd2, m_Pwd3, m_Pwd4;
    qint16 m_EnableMailCheck1 = 0, m_EnableMailCheck2 = 0, m_EnableMailCheck3 = 0,
           m_EnableMailCheck4 = 0;
    qint16 m_CheckIntervall = 0;

    double m_reservedDate = 0;
    QString m_movedAsidePath;
    QString m_lastError;
    QList<int> m_unstorablePasswords;
    bool m_passwordsInSecretStore = false;
};

// The one preferences object of the process (created at start-up).
Prefer &prefer();
