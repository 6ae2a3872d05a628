#include "console/TStreamSender.h"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <mutex>

namespace {

constexpr unsigned kSendWaitMs = 200;
constexpr int kWaitBudget = 100, kWaitCost = 2, kBudgetEnd = 3;  // about 10 s of waiting a block

}  // namespace

void TStreamSender::SetPipe(LNamedPipe* pipe) {
  sending_ = false;
  Stop();
  pipe_ = pipe;
  {
    std::lock_guard lock(mutex_);
    spare_.insert(spare_.end(), std::make_move_iterator(queue_.begin()), std::make_move_iterator(queue_.end()));
    queue_.clear();
    spare_.resize(kQueueBlocks);
  }
  if (!pipe_ || !pipe_->IsOpen()) return;
  sending_ = true;
  Start(kPriorityWorking);
}

void TStreamSender::Send(const int* samples, int count) {
  if (!sending_) return;
  {
    std::lock_guard lock(mutex_);
    if (spare_.empty()) {
      ++dropped_;
      return;
    }
    std::vector<int> block = std::move(spare_.back());
    spare_.pop_back();
    block.assign(samples, samples + count);
    queue_.push_back(std::move(block));
  }
  queued_.Signal();
}

void TStreamSender::ThreadFunction() {
  while (!IsToStop()) {
    queued_.Reset();
    std::vector<int> block;
    {
      std::lock_guard lock(mutex_);
      if (!queue_.empty()) {
        block = std::move(queue_.front());
        queue_.pop_front();
      }
    }
    if (block.empty()) {
      if (ProcessWaitSignal(queued_, kWaitForever) == lpwStopped) return;
      continue;
    }
    if (!SendBlock(block)) ++dropped_;
    std::lock_guard lock(mutex_);
    spare_.push_back(std::move(block));
  }
}

// A block given up halfway would shift every sample behind it, so then the connection goes too.
bool TStreamSender::SendBlock(const std::vector<int>& block) {
  const std::size_t size = block.size() * sizeof(int);
  const std::size_t left = SendBytes(reinterpret_cast<const char*>(block.data()), size);
  if (left == 0) return true;
  if (left == size && sending_) return false;
  sending_ = false;
  pipe_->MarkBroken();  // the main thread closes it and looks for the next server
  return false;
}

std::size_t TStreamSender::SendBytes(const char* bytes, std::size_t left) {
  int budget = kWaitBudget;
  while (left > 0) {
    const auto sent = ::send(pipe_->Descriptor(), bytes, left, MSG_NOSIGNAL);
    if (sent >= 0) {
      bytes += sent;
      left -= std::size_t(sent);
      continue;
    }
    if (errno == EINTR) continue;
    if (errno != EAGAIN && errno != EWOULDBLOCK) {
      sending_ = false;  // the server is gone
      return left;
    }
    pollfd ends[2] = {{pipe_->Descriptor(), POLLOUT, 0}, {StopSignal().ReadEnd(), POLLIN, 0}};
    if (LWait::Poll(ends, 2, kSendWaitMs)) {
      if (IsToStop()) return left;
      continue;
    }
    budget -= kWaitCost;
    if (budget < kBudgetEnd) return left;
  }
  return 0;
}
