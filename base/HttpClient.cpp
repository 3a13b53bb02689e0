#include "base/HttpClient.h"
namespace vorle {
class HttpClient::Private {};
HttpClient::HttpClient(bool, QObject *parent) : QObject(parent) {}
HttpClient::~HttpClient() = default;
Task<HttpResponse> HttpClient::get(HttpRequest, CancelToken) { co_return HttpResponse{}; }
} // namespace vorle
