// SPDX-License-Identifier: MIT
#include "convert/modelfile.h"

#include <QFileInfo>

namespace TorvoEditor
{

namespace
{

/// The URL put together again, its parts decoded.
QString DecodedText(const QUrl& url)
{
    QString text = url.path(QUrl::FullyDecoded);
    if (!url.scheme().isEmpty())
        text.prepend(url.scheme() + ':');
    if (url.hasQuery())
        text += '?' + url.query(QUrl::FullyDecoded);
    if (url.hasFragment())
        text += '#' + url.fragment(QUrl::FullyDecoded);
    return text;
}

} // namespace

QString ModelFilePath(const QUrl& file)
{
    if (file.isLocalFile())
        return QFileInfo(file.toLocalFile()).absoluteFilePath();
    const QFileInfo decoded(DecodedText(file));
    // A name may hold what looks like the code of a character.
    const QFileInfo asGiven(QString::fromUtf8(file.toEncoded()));
    return (!decoded.exists() && asGiven.exists() ? asGiven : decoded).absoluteFilePath();
}

} // namespace TorvoEditor
