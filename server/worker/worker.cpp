// SPDX-License-Identifier: MIT
#include "server/worker/worker.h"

#include "server/accounts/token.h"
#include "server/worker/converterprocess.h"

#include <ctime>
#include <exception>
#include <iostream>

namespace server
{

namespace
{

/// Of the percentages that are told; the rest is for the publication.
constexpr double converterShare = 0.95;
constexpr int mostTries = 5; ///< to publish, while others change the project

/// As other programs make the keys of projects.
std::string MakeGuid()
{
    auto text = MakeToken().substr(0, 32);
    for (const std::size_t place : {8, 13, 18, 23})
        text.insert(place, 1, '-');
    text[14] = '4';
    text[19] = 'a';
    return text;
}

/// A folder that is empty when a job begins and gone when it has ended.
class JobFolder
{
public:
    explicit JobFolder(std::filesystem::path folder)
        : m_folder(std::move(folder))
    {
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directories(m_folder);
    }
    ~JobFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_folder, error);
    }
    JobFolder(const JobFolder&) = delete;
    JobFolder& operator=(const JobFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder; }

private:
    std::filesystem::path m_folder;
};

} // namespace

Worker::Worker(Store& store, Settings settings, std::function<bool()> isToEnd)
    : m_store(store)
    , m_settings(std::move(settings))
    , m_isToEnd(std::move(isToEnd))
    , m_archives(m_settings.data / "archives")
    , m_publisher(store, m_settings.data / "packs")
{
}

bool Worker::doNext()
{
    const auto job = m_store.takeJob(m_settings.name, std::time(nullptr) + m_settings.lease.count());
    if (!job)
        return false;
    try {
        convert(*job);
    } catch (const std::exception& exception) {
        std::cerr << "job " << job->id << " failed: " << exception.what() << '\n';
        fail(*job, exception.what());
    }
    return true;
}

bool Worker::keep(const Job& job, double percent)
{
    return m_store.keepJob(job.id, m_settings.name, percent, std::time(nullptr) + m_settings.lease.count());
}

/// A lease that has run out is the way on which jobs go back into the queue.
void Worker::giveBack(const Job& job)
{
    (void)m_store.keepJob(job.id, m_settings.name, 0.0, 0);
}

void Worker::fail(const Job& job, const std::string& reason)
{
    m_store.failJob(job.id, m_settings.name, reason, std::time(nullptr));
}

void Worker::convert(const Job& job)
{
    const JobFolder folder(m_settings.data / "work" / job.id);
    const auto model = MakeGuid();
    const std::vector<std::string> command = {
        m_settings.converter.string(),
        m_archives.file(job.archive).string(),
        (folder.path() / ("proj_" + model)).string(),
        "--name=" + job.name,
        "--mode=" + std::to_string(job.mode),
        "--time=" + std::to_string(m_settings.jobTime.count()),
        "--memory=" + std::to_string(m_settings.jobMebibytes),
        "--cache=" + (m_settings.data / "cache").string(),
    };
    const auto end = RunConverter(
        command, [&](double percent) { return !m_isToEnd() && keep(job, 1.0 + percent * converterShare); });
    switch (end.how) {
    case ConverterEnd::How::done:
        publish(job, folder.path(), model);
        return;
    case ConverterEnd::How::failed:
        fail(job, end.reason);
        return;
    case ConverterEnd::How::killed:
    case ConverterEnd::How::stopped:
        giveBack(job);
        return;
    }
}

void Worker::publish(const Job& job, const std::filesystem::path& folder, const std::string& model)
{
    for (int tries = 0; tries < mostTries; ++tries) {
        if (!keep(job, 1.0 + 100.0 * converterShare))
            return;
        switch (m_publisher.publish(job, m_settings.name, folder, model)) {
        case PublishAnswer::published:
            m_archives.remove(job.archive);
            return;
        case PublishAnswer::gone:
            return;
        case PublishAnswer::conflict:
            break;
        }
    }
    fail(job, "the project is changed too often");
}

} // namespace server
