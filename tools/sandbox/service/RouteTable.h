#pragma once

#include "sandbox/service/ServiceResponse.h"

#include <functional>
#include <vector>

// One request to a route that needs no signed-in user, with the ids taken from its path.
struct RouteCall {
    const ServiceRequest& request;
    const QStringList& params;

    QString param(qsizetype index) const { return params.value(index); }
};

// How a route takes its request body: read whole into memory, or streamed to the handler.
enum class BodyMode { InMemory, Streamed };

// Matches a method and the path segments against patterns such as "team/{}/task", where "{}"
// takes one segment as a parameter.
template <typename Call> class RouteTable {
public:
    using Handler = std::function<ServiceResponse(const Call&)>;

    void add(QByteArrayView method, QStringView pattern, Handler handler, BodyMode mode = BodyMode::InMemory) {
        const QStringList segments = pattern.isEmpty() ? QStringList() : pattern.toString().split(QLatin1Char('/'));
        m_routes.push_back(Route{method.toByteArray(), segments, std::move(handler), mode});
    }

    // The handler for the request and its parameters, or null.
    const Handler* find(const QByteArray& method, const QStringList& segments, QStringList& params) const {
        const Route* route = match(method, segments, params);
        return route ? &route->handler : nullptr;
    }

    bool streams(const QByteArray& method, const QStringList& segments) const {
        QStringList params;
        const Route* route = match(method, segments, params);
        return route && route->mode == BodyMode::Streamed;
    }

private:
    struct Route {
        QByteArray method;
        QStringList pattern;
        Handler handler;
        BodyMode mode;
    };

    const Route* match(const QByteArray& method, const QStringList& segments, QStringList& params) const {
        for (const Route& route : m_routes) {
            if (route.method == method && matches(route.pattern, segments, params)) {
                return &route;
            }
        }
        return nullptr;
    }

    static bool matches(const QStringList& pattern, const QStringList& segments, QStringList& params) {
        if (pattern.size() != segments.size()) {
            return false;
        }
        QStringList found;
        for (qsizetype index = 0; index < pattern.size(); ++index) {
            if (pattern[index] == QLatin1String("{}")) {
                found.append(segments[index]);
            } else if (pattern[index] != segments[index]) {
                return false;
            }
        }
        params = found;
        return true;
    }

    std::vector<Route> m_routes;
};
