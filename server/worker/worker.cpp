// SPDX-License-Identifier: MIT
#include "server/worker/worker.h"

#include "server/conversions/modelpublisher.h"
#include "server/worker/converterprocess.h"

#include <exception>
#include <iostream>

namespace server
{

namespace
{

/// Of the percentages that are told; the rest is for the publication.
constexpr double converterShare = 0.95;

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

Worker::Worker(JobDesk& desk, Settings settings, std::function<bool()> isToEnd)
    : m_desk(desk)
    , m_settings(std::move(settings))
    , m_isToEnd(std::move(isToEnd))
{
}

bool Worker::doNext()
{
    const auto job = m_desk.take();
    if (!job)
        return false;
    try {
        convert(*job);
    } catch (const JobStopped&) {
        m_desk.giveBack(*job);
    } catch (const JobLost& loss) {
        std::cerr << "job " << job->id << " was given up: " << loss.what() << '\n';
    } catch (const std::exception& exception) {
        std::cerr << "job " << job->id << " failed: " << exception.what() << '\n';
        m_desk.fail(*job, exception.what());
    }
    return true;
}

std::vector<std::string> Worker::commandFor(const Job& job, const std::filesystem::path& archive,
                                            const std::filesystem::path& target) const
{
    return {
        m_settings.converter.string(),
        archive.string(),
        target.string(),
        "--name=" + job.name,
        "--mode=" + std::to_string(job.mode),
        "--time=" + std::to_string(m_settings.jobTime.count()),
        "--memory=" + std::to_string(m_settings.jobMebibytes),
        "--cache=" + (m_settings.folder / "cache").string(),
    };
}

void Worker::convert(const Job& job)
{
    const JobFolder folder(m_settings.folder / "work" / job.id);
    const auto model = MakeGuid();
    const auto archive = m_desk.archive(job, folder.path());
    const auto command = commandFor(job, archive, folder.path() / ("proj_" + model));
    const auto end = RunConverter(command, [&](double percent) {
        return !m_isToEnd() && m_desk.keep(job, 1.0 + percent * converterShare);
    });
    switch (end.how) {
    case ConverterEnd::How::done:
        m_desk.publish(job, folder.path(), model);
        return;
    case ConverterEnd::How::failed:
        m_desk.fail(job, end.reason);
        return;
    case ConverterEnd::How::killed:
    case ConverterEnd::How::stopped:
        m_desk.giveBack(job);
        return;
    }
}

} // namespace server
