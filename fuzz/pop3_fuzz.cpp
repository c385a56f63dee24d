// A POP3 server answering anything: the mail check says its words in their order and
// no others, never gives the password to a server that did not accept the user name,
// never says it in clear once the server offered to encrypt, and stops when it is done.
#include "core/mail/pop3dialogue.h"
#include "scratchfolder.h"

#include <QList>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 1)
        return 0;
    const bool askForStartTls = data[0] & 1;
    const bool handshakeSucceeds = data[0] & 2;
    const QList<QByteArray> lines
        = QByteArray(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1)).split('\n');
    Pop3Dialogue dialogue("user", "secret", askForStartTls);
    QList<QByteArray> said;
    bool encrypted = false, awaitingTls = false, userAccepted = false, done = false;
    QByteArray previous;
    const auto take = [&](const Pop3Dialogue::Reaction &reaction) {
        FUZZ_ASSERT(!done || reaction.send.isEmpty());
        if (!reaction.send.isEmpty()) {
            const QByteArray word = reaction.send.split(' ').value(0).trimmed();
            // PASS only right after a good answer to USER; never in clear after STLS was asked.
            if (word == "PASS")
                FUZZ_ASSERT(userAccepted && previous == "USER" && !awaitingTls);
            if (word == "USER" || word == "PASS")
                FUZZ_ASSERT(!awaitingTls && (encrypted || !said.contains("STLS")));
            said.append(word);
            previous = word;
        }
        awaitingTls = awaitingTls || reaction.startTls;
        done = done || reaction.done;
    };
    for (QByteArray line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (awaitingTls) {
            if (!handshakeSucceeds)
                return 0; // the connection ends with the failed handshake
            awaitingTls = false;
            encrypted = true;
            take(dialogue.tlsEstablished());
        }
        userAccepted = previous == "USER" && Pop3Dialogue::isGood(line);
        take(dialogue.reply(line));
    }
    // The words come in their order, each once.
    const QList<QByteArray> order {"CAPA", "STLS", "USER", "PASS", "LIST", "QUIT"};
    qsizetype last = -1;
    for (const QByteArray &word : std::as_const(said)) {
        const qsizetype at = order.indexOf(word);
        FUZZ_ASSERT(at > last);
        last = at;
    }
    FUZZ_ASSERT(!said.contains("STLS") || askForStartTls);
    return 0;
}
