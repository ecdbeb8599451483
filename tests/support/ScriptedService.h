#pragma once

#include "service/InProcessHttpSession.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace roost::test {

/// A service without a network: a test says what it answers at each path. Everything is answered at once.
class ScriptedService {
public:
    /// The answers of the next requests to `path`, in order; the last one goes on for all that follow. A path
    /// without any is status 404.
    void answer(const std::string& path, HttpResult result) { answers_[path].push_back(std::move(result)); }
    void answer(const std::string& path, int status, const std::string& body)
    {
        answer(path, HttpResponse{status, {}, QByteArray::fromStdString(body)});
    }

    /// In place of what was said of `path` before.
    void answerOnly(const std::string& path, HttpResult result)
    {
        answers_.erase(path);
        answer(path, std::move(result));
    }
    void answerOnly(const std::string& path, int status, const std::string& body)
    {
        answerOnly(path, HttpResponse{status, {}, QByteArray::fromStdString(body)});
    }

    HttpSession& session() { return session_; }

    /// The requests so far, in order, and those of them to one path.
    const std::vector<HttpRequest>& requests() const { return requests_; }
    std::vector<HttpRequest> requests(const std::string& path) const
    {
        std::vector<HttpRequest> found;
        for (const HttpRequest& request : requests_) {
            if (request.url.path().toStdString() == path) {
                found.push_back(request);
            }
        }
        return found;
    }

    /// The paths of the requests so far, in order.
    std::vector<std::string> paths() const
    {
        std::vector<std::string> all;
        for (const HttpRequest& request : requests_) {
            all.push_back(request.url.path().toStdString());
        }
        return all;
    }

private:
    QCoro::Task<HttpResult> answerTo(HttpRequest request)
    {
        requests_.push_back(request);
        auto& next = answers_[request.url.path().toStdString()];
        if (next.empty()) {
            co_return HttpResponse{404, {}, {}};
        }
        HttpResult result = next.front();
        if (next.size() > 1) {
            next.pop_front();
        }
        co_return result;
    }

    std::map<std::string, std::deque<HttpResult>> answers_;
    std::vector<HttpRequest> requests_;
    InProcessHttpSession session_{
        [this](HttpRequest request, std::stop_token) { return answerTo(std::move(request)); }};
};

} // namespace roost::test
