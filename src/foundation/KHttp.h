#pragma once

// The rules that every request of this program to a server of its maker keeps: where it may go, how
// long it may take and how much of an answer is read. Plain functions for the GUI thread.

#include <QByteArray>
#include <QNetworkRequest>
#include <QUrl>

class QNetworkReply;

namespace KHttp {

/// Whether something may be sent there: https to anywhere, http to this machine only.
[[nodiscard]] bool isAllowed(const QUrl &url);

/// A request that follows no redirect, gives up after half a minute of silence and takes no
/// compressed answer, whose size would only be known once it is unpacked.
QNetworkRequest request(const QUrl &url);

/// Ends @p reply once more than @p maxBytes of its body have come in; what came until then stays
/// readable. Call it right after the request was sent.
void limitBody(QNetworkReply *reply, qint64 maxBytes);

/// Whether limitBody() ended the reply.
[[nodiscard]] bool wasCut(const QNetworkReply &reply);

/// Whether the server answered with a status of 2xx and the body is whole.
[[nodiscard]] bool succeeded(const QNetworkReply &reply);

/// The status was 2xx, whatever became of the body.
[[nodiscard]] bool hasSuccessStatus(const QNetworkReply &reply);

} // namespace KHttp
