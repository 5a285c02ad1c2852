#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QThreadPool>

#include <memory>
#include <vector>

// One picture of a pass; -1 means unknown (the worker stats the file).
struct ThumbJob
{
    QString path;
    qint64 size = -1;
    qint64 mtime = -1;
};

// Makes the gallery's thumbnails on worker threads of its own: from memory, else from the
// shared disk cache, else by decoding the picture at the cache's size (which also fills the
// disk cache). The UI thread only hands out finished thumbnails.
class ThumbPipeline : public QObject
{
    Q_OBJECT

public:
    explicit ThumbPipeline(QObject* parent = nullptr);
    // Waits for the thumbnails the workers are on.
    ~ThumbPipeline() override;

    // Starts a pass over jobs, made in that order except that the visible range goes first.
    // innerBox is the cell's inner size in device pixels. A running pass is dropped without
    // Done. Entries with known facts already in memory count as finished at once and get no
    // Made: repaint the cells after Start. Progress and Done for those come from the event loop.
    void Start(std::vector<ThumbJob> jobs, QSize innerBox);
    // These entries are made next; the range holds across Start until changed.
    void SetVisible(int first, int last);
    // Drops the queued work and emits Done(true); a thumbnail a worker is on still lands in
    // memory, without Made.
    void Cancel();

    // The entry's thumbnail fitted into innerBox, or null: not made yet, not a picture, or
    // pushed out of memory. One pushed out is made again at once (from the disk cache) and
    // Made follows; the budget must therefore hold at least the visible cells.
    QImage Picture(int index) const;
    int Finished() const { return m_finished; }
    int Count() const { return int(m_jobs ? m_jobs->size() : 0); }
    bool Running() const { return m_running; }
    // Bound of the thumbnails kept in memory, in bytes; the least recently used go first.
    void SetMemoryBudget(qint64 bytes);

    static constexpr qint64 DefaultMemoryBudget = 192 * 1024 * 1024;

Q_SIGNALS:
    // A thumbnail is ready (pictures that cannot be read count in Progress only).
    void Made(int index);
    void Progress(int finished, int total);
    void Done(bool cancelled);

private:
    struct Task;
    struct Result;
    class Queue;
    class MemoryCache;
    enum class State : quint8;

    void wake() const;
    void work();
    void deliver(const Result& result);

    std::shared_ptr<const std::vector<ThumbJob>> m_jobs;
    QSize m_innerBox;
    quint64 m_generation = 0;
    // Per entry, on the UI thread: what became of it and the facts the worker saw.
    mutable std::vector<State> m_states;
    std::vector<std::pair<qint64, qint64>> m_facts; // size, mtime
    int m_finished = 0;
    bool m_running = false;
    std::unique_ptr<Queue> m_queue;
    std::unique_ptr<MemoryCache> m_memory;
    QThreadPool m_pool;
};
