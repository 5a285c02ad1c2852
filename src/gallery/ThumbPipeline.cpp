#include "gallery/ThumbPipeline.h"

#include "gallery/ThumbCache.h"
#include "imaging/PictureLoader.h"

#include <QCache>
#include <QDateTime>
#include <QFileInfo>
#include <QMutex>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <optional>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

struct MemoryKey
{
    QString path;
    qint64 size;
    qint64 mtime;
    QSize box;
    bool operator==(const MemoryKey&) const = default;
};

size_t qHash(const MemoryKey& key, size_t seed = 0)
{
    return qHashMulti(seed, key.path, key.size, key.mtime, key.box.width(), key.box.height());
}

// Workers give way to the UI thread: with both cores making thumbnails, a scroll or a click
// would otherwise wait for a worker's time slice to end. Linux keeps a nice value per thread.
void yieldToTheUi()
{
#ifdef Q_OS_LINUX
    thread_local bool lowered = false;
    if (lowered)
        return;
    lowered = true;
    const auto thread = id_t(syscall(SYS_gettid));
    errno = 0;
    const int nice = getpriority(PRIO_PROCESS, thread);
    if (errno == 0)
        setpriority(PRIO_PROCESS, thread, std::min(nice + 5, 19));
#endif
}

bool known(qint64 size, qint64 mtime)
{
    return size >= 0 && mtime >= 0;
}

// The thumbnail shown in a cell: fitted into box (never enlarged) from the picture's own
// proportions where known, in a format that paints without conversion.
QImage fitted(const QImage& image, const QSize& naturalSize, const QSize& box)
{
    const QSize target =
        PictureLoader::FitSize(naturalSize.isValid() ? naturalSize : image.size(), box, false);
    const QImage scaled = target == image.size() ? image
                                                 : PictureLoader::SmoothScaled(image, target);
    return scaled.convertToFormat(scaled.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                           : QImage::Format_RGB32);
}

// Disk cache first; otherwise decode straight at the cache's size, which libjpeg's reduced
// decoding makes cheap, and keep the result (or the failure) for every program's next time.
QImage makeThumbnail(const QString& path, const FileFacts& facts, const QSize& box)
{
    if (ThumbCache::isInsideCache(path)) {
        const LoadedPicture picture = PictureLoader::Load(path, box);
        return picture.isNull() ? QImage() : fitted(picture.image, picture.naturalSize, box);
    }
    const ThumbCache::Thumbnail cached = ThumbCache::read(path, facts, box);
    if (!cached.image.isNull())
        return fitted(cached.image, cached.naturalSize, box);
    if (ThumbCache::hasFailure(path, facts))
        return {};

    const ThumbCache::Flavour flavour = ThumbCache::flavourFor(qMax(box.width(), box.height()));
    const int edge = ThumbCache::edge(flavour);
    const LoadedPicture picture = PictureLoader::Load(path, QSize(edge, edge));
    if (picture.isNull()) {
        // A file we may not read now is no verdict on its content.
        if (QFileInfo(path).isReadable())
            ThumbCache::writeFailure(path, facts);
        return {};
    }
    ThumbCache::write(path, facts, picture.image, picture.naturalSize, flavour);
    return fitted(picture.image, picture.naturalSize, box);
}

} // namespace

enum class ThumbPipeline::State : quint8
{
    Waiting,
    Made,
    Failed,
    Remaking
};

struct ThumbPipeline::Task
{
    quint64 generation;
    int index;
    bool remake;
    ThumbJob job;
    QSize box;
};

struct ThumbPipeline::Result
{
    quint64 generation;
    int index;
    bool remake;
    QString path;
    qint64 size;
    qint64 mtime;
    QSize box;
    QImage image; // null: the file is no picture we can read
};

// Thumbnails fitted to their box, bounded in bytes. A null image records a file that failed,
// so a repeated pass does not ask the disk about it again. Shared with the workers.
class ThumbPipeline::MemoryCache
{
public:
    explicit MemoryCache(qint64 budget) : m_cache(budget) {}

    // Nothing when absent; a null image when the file failed.
    std::optional<QImage> find(const MemoryKey& key)
    {
        QMutexLocker lock(&m_mutex);
        if (const QImage* image = m_cache.object(key))
            return *image;
        return std::nullopt;
    }

    void insert(const MemoryKey& key, const QImage& image)
    {
        const qint64 cost = image.sizeInBytes() + key.path.size() * 2 + 64;
        QMutexLocker lock(&m_mutex);
        m_cache.insert(key, new QImage(image), cost);
    }

    bool isEmpty()
    {
        QMutexLocker lock(&m_mutex);
        return m_cache.isEmpty();
    }

    void setBudget(qint64 bytes)
    {
        QMutexLocker lock(&m_mutex);
        m_cache.setMaxCost(bytes);
    }

private:
    QMutex m_mutex;
    QCache<MemoryKey, QImage> m_cache;
};

// What the workers do next: first thumbnails pushed out of memory that a cell asked for, then
// the visible range, then the pass in order. Workers pull indices, so a pass of any length
// costs one flag per entry.
class ThumbPipeline::Queue
{
public:
    explicit Queue(int workers) : m_workers(workers) {}

    void reset(quint64 generation, std::shared_ptr<const std::vector<ThumbJob>> jobs,
               const QSize& box, std::vector<bool> done)
    {
        QMutexLocker lock(&m_mutex);
        m_generation = generation;
        m_jobs = std::move(jobs);
        m_box = box;
        m_taken = std::move(done);
        m_cursor = 0;
        m_visibleCursor = m_first;
        m_remakes.clear();
        m_cancelled = false;
    }

    void setVisible(int first, int last)
    {
        QMutexLocker lock(&m_mutex);
        m_first = qMax(first, 0);
        m_last = last;
        m_visibleCursor = m_first;
    }

    void cancel()
    {
        QMutexLocker lock(&m_mutex);
        m_cancelled = true;
        m_remakes.clear();
    }

    void remake(int index)
    {
        QMutexLocker lock(&m_mutex);
        m_remakes.push_back(index);
    }

    // How many more workers the waiting work can use; they count as running from here on.
    int claimWorkers()
    {
        QMutexLocker lock(&m_mutex);
        if (m_remakes.empty() && (m_cancelled || (m_cursor >= count() && !visibleLeft())))
            return 0;
        const int more = m_workers - m_active;
        m_active += more;
        return more;
    }

    // The next task, or nothing, in which case the calling worker has stopped.
    std::optional<Task> take()
    {
        QMutexLocker lock(&m_mutex);
        if (!m_remakes.empty()) {
            const int index = m_remakes.front();
            m_remakes.pop_front();
            return task(index, true);
        }
        if (!m_cancelled) {
            while (visibleLeft()) {
                const int index = m_visibleCursor++;
                if (!m_taken[index])
                    return claim(index);
            }
            while (m_cursor < count()) {
                const int index = m_cursor++;
                if (!m_taken[index])
                    return claim(index);
            }
        }
        --m_active;
        return std::nullopt;
    }

private:
    int count() const { return int(m_taken.size()); }
    bool visibleLeft() const { return m_visibleCursor <= qMin(m_last, count() - 1); }

    Task claim(int index)
    {
        m_taken[index] = true;
        return task(index, false);
    }

    Task task(int index, bool remake) const
    {
        return {m_generation, index, remake, (*m_jobs)[index], m_box};
    }

    QMutex m_mutex;
    const int m_workers;
    int m_active = 0;
    quint64 m_generation = 0;
    std::shared_ptr<const std::vector<ThumbJob>> m_jobs;
    QSize m_box;
    std::vector<bool> m_taken;
    int m_cursor = 0;
    int m_first = 0;
    int m_last = -1;
    int m_visibleCursor = 0;
    std::deque<int> m_remakes;
    bool m_cancelled = false;
};

ThumbPipeline::ThumbPipeline(QObject* parent)
    : QObject(parent), m_queue(std::make_unique<Queue>(QThread::idealThreadCount())),
      m_memory(std::make_unique<MemoryCache>(DefaultMemoryBudget))
{
    m_pool.setMaxThreadCount(QThread::idealThreadCount());
}

ThumbPipeline::~ThumbPipeline()
{
    m_queue->cancel();
    m_pool.waitForDone();
}

void ThumbPipeline::Start(std::vector<ThumbJob> jobs, QSize innerBox)
{
    ++m_generation;
    m_jobs = std::make_shared<const std::vector<ThumbJob>>(std::move(jobs));
    m_innerBox = innerBox;
    const int count = Count();
    m_states.assign(count, State::Waiting);
    m_facts.resize(count);
    m_finished = 0;
    // A re-sort or refresh of the same folder finds its thumbnails here without a worker.
    std::vector<bool> done(count);
    // The first load of a big folder has nothing in memory: skip a hundred thousand look-ups.
    const bool lookUp = !m_memory->isEmpty();
    for (int i = 0; i < count; ++i) {
        const ThumbJob& job = (*m_jobs)[i];
        m_facts[i] = {job.size, job.mtime};
        if (!lookUp || !known(job.size, job.mtime))
            continue;
        if (const auto image = m_memory->find({job.path, job.size, job.mtime, innerBox})) {
            m_states[i] = image->isNull() ? State::Failed : State::Made;
            done[i] = true;
            ++m_finished;
        }
    }
    m_running = m_finished < count;
    m_queue->reset(m_generation, m_jobs, innerBox, std::move(done));

    const quint64 generation = m_generation;
    const int finished = m_finished;
    QMetaObject::invokeMethod(
        this,
        [this, generation, finished, count] {
            if (generation != m_generation)
                return;
            emit Progress(finished, count);
            if (finished == count)
                emit Done(false);
        },
        Qt::QueuedConnection);
    wake();
}

void ThumbPipeline::SetVisible(int first, int last)
{
    m_queue->setVisible(first, last);
    wake();
}

void ThumbPipeline::Cancel()
{
    m_queue->cancel();
    for (State& state : m_states) {
        if (state == State::Remaking)
            state = State::Made;
    }
    if (!m_running)
        return;
    m_running = false;
    emit Done(true);
}

QImage ThumbPipeline::Picture(int index) const
{
    if (index < 0 || index >= Count())
        return {};
    const auto [size, mtime] = m_facts[index];
    if (known(size, mtime)) {
        if (auto image = m_memory->find({(*m_jobs)[index].path, size, mtime, m_innerBox}))
            return *image;
    }
    if (m_states[index] == State::Made) {
        m_states[index] = State::Remaking;
        m_queue->remake(index);
        wake();
    }
    return {};
}

void ThumbPipeline::SetMemoryBudget(qint64 bytes)
{
    m_memory->setBudget(bytes);
}

void ThumbPipeline::wake() const
{
    // Picture() is const for its callers; making an evicted thumbnail again is upkeep.
    auto* self = const_cast<ThumbPipeline*>(this);
    for (int more = m_queue->claimWorkers(); more > 0; --more)
        self->m_pool.start([self] { self->work(); });
}

void ThumbPipeline::work()
{
    yieldToTheUi();
    while (const std::optional<Task> task = m_queue->take()) {
        Result result{task->generation, task->index,     task->remake, task->job.path,
                      task->job.size,   task->job.mtime, task->box,    {}};
        bool fromMemory = false;
        if (!known(result.size, result.mtime)) {
            const QFileInfo info(result.path);
            if (info.isFile()) {
                result.size = info.size();
                result.mtime = info.lastModified().toSecsSinceEpoch();
                const auto image =
                    m_memory->find({result.path, result.size, result.mtime, result.box});
                if (image) {
                    result.image = *image;
                    fromMemory = true;
                }
            }
        }
        if (!fromMemory && known(result.size, result.mtime))
            result.image = makeThumbnail(result.path, {result.size, result.mtime}, result.box);
        QMetaObject::invokeMethod(
            this, [this, result = std::move(result)] { deliver(result); }, Qt::QueuedConnection);
    }
}

void ThumbPipeline::deliver(const Result& result)
{
    // Kept even when the pass is gone: the next pass over the same files starts with it.
    if (known(result.size, result.mtime))
        m_memory->insert({result.path, result.size, result.mtime, result.box}, result.image);
    if (result.generation != m_generation)
        return;
    m_facts[result.index] = {result.size, result.mtime};
    const bool made = !result.image.isNull();
    if (!result.remake && !m_running)
        return; // cancelled: no more Made after Done
    m_states[result.index] = made ? State::Made : State::Failed;
    if (made)
        emit Made(result.index);
    if (result.remake)
        return;
    ++m_finished;
    emit Progress(m_finished, Count());
    if (m_finished == Count()) {
        m_running = false;
        emit Done(false);
    }
}
