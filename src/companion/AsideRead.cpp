#include "companion/AsideRead.h"

#include "companion/DatabaseConnection.h"

#include <utility>

namespace kintar::companion {

AsideRead::AsideRead(std::shared_ptr<DatabaseConnection> connection, std::string sql,
                     std::function<void()> ended)
    : connection_(std::move(connection)), rows_(promise_.get_future()),
      thread_([this, sql = std::move(sql), ended = std::move(ended)] { read(sql, ended); }) {}

AsideRead::~AsideRead() {
    stop_ = true;
    thread_.join();
}

bool AsideRead::waitFor(std::chrono::milliseconds limit) {
    return rows_.wait_for(limit) == std::future_status::ready;
}

Recordset AsideRead::take() {
    return rows_.get();
}

void AsideRead::read(const std::string& sql, const std::function<void()>& ended) {
    connection_->stopWhen(&stop_);
    try {
        Recordset rows = connection_->open(sql);
        connection_->stopWhen(nullptr);
        promise_.set_value(std::move(rows));
    } catch (...) {
        // Whatever it was, whoever takes the rows is to have it.
        connection_->stopWhen(nullptr);
        promise_.set_exception(std::current_exception());
    }
    ended();
}

} // namespace kintar::companion
