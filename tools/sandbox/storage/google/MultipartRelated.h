#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

#include <optional>

// A multipart/related body (RFC 2387) as Drive's multipart upload sends it: parts with their own
// headers, between lines of the boundary, with carriage return and line feed as line ends.
namespace MultipartRelated {

struct Part {
    // Header names in lower case.
    QMap<QByteArray, QByteArray> headers;
    QByteArray content;
};

// The boundary of a Content-Type of multipart/related, or absent for any other type.
std::optional<QByteArray> boundaryOf(const QByteArray& contentType);
// The parts in order, or absent when the body doesn't have the form: it must start with the first
// boundary line and end with the closing one.
std::optional<QList<Part>> parse(const QByteArray& body, const QByteArray& boundary);

} // namespace MultipartRelated
