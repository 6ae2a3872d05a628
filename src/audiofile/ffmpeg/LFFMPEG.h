// The library behind the last rung of the opening ladder, its objects held by owners that free them.
// Threads  [any]; each object belongs to its manager.
#pragma once
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

struct LFFMPEGFree {
  void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(SwrContext* context) const { swr_free(&context); }
};
template <class Object>
using LFFMPEGPtr = std::unique_ptr<Object, LFFMPEGFree>;
