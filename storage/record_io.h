#pragma once
// One pass over a file of 256-byte records that either writes or reads, so that a
// writer and its reader are the same code and can never disagree about the order.
//
// Record layouts: a text record (200 characters, then a 56-character date field), a
// long text (256 characters), and runs of 4-byte words (64 a record) or of 8-byte values
// (32 a record). A run starts a new record; what it leaves of its last record is padded
// with zeros on writing and ignored on reading. Texts are Windows-1252 on disk, blank
// padded. Reading throws RecordFault at the first short record or value out of range.

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "engine/money.h"
#include "storage/file_bytes.h"

struct RecordFault {
  int record;  // the number (from 1) of the record at fault
};

class RecordIo {
 public:
  static constexpr int kTextChars = 200, kDateChars = 56;

  // A writer appends to its own bytes; a reader walks `bytes`, which must outlive it.
  RecordIo() = default;
  explicit RecordIo(const Bytes& bytes) : in_(&bytes) {}

  bool Reading() const { return in_ != nullptr; }
  const Bytes& Output() const { return out_; }
  Bytes TakeOutput() { return std::move(out_); }
  // The number (from 1) of the next record.
  int NextRecord() const { return next_ + 1; }
  // Whether a reader has records left.
  bool AtEnd() const { return in_ == nullptr || static_cast<size_t>(next_) * 256 >= in_->size(); }

  // A text record whose date field is blank on writing and ignored on reading.
  void Text(std::string& text);
  void Text(std::string& text, std::string& date);
  void LongText(std::string& text);

  // A run of slots of 4 bytes (words) or 8 bytes (wide values).
  class Run {
   public:
    // Any 32-bit value, or one within [lo, hi]. In a wide run a whole number is stored
    // times 10000, as Money holds it.
    void Int(int32_t& v);
    void Int(int32_t& v, int32_t lo, int32_t hi);
    // A flag: -1 for true, 0 for false; on reading anything but 0 is true.
    void Bool(bool& v);
    void Float(float& v);    // words: finite single floats
    void Double(double& v);  // wide: finite doubles
    void Money(::Money& v);  // wide: the raw ten-thousandths
    void Money(::Money& v, ::Money lo, ::Money hi);
    void Long(int64_t& v, int64_t lo, int64_t hi);  // wide: a plain 64-bit integer
    // Slots that carry nothing: zeros on writing, ignored on reading.
    void Skip(int slots);
    bool Reading() const { return io_.Reading(); }
    // A value read that the file can't hold: the reader stops. Writing, nothing happens.
    void Fault() const;
    template <size_t N>
    void Ints(std::array<int32_t, N>& a) {
      for (int32_t& v : a) Int(v);
    }

   private:
    friend class RecordIo;
    Run(RecordIo& io, int width) : io_(io), width_(width) {}
    unsigned char* Slot();        // writing: the next slot, zeroed
    const unsigned char* Next();  // reading: the next slot
    RecordIo& io_;
    int width_;
    int used_ = 256;  // bytes used of the current record; 256 starts a new one
  };

  template <class F>
  void Words(F&& f) {
    Run run(*this, 4);
    f(run);
  }
  template <class F>
  void Wide(F&& f) {
    Run run(*this, 8);
    f(run);
  }

  // A reader stops at a value the file can't hold; a writer goes on.
  void Fault() const {
    if (Reading()) throw RecordFault{next_};
  }

 private:
  unsigned char* NewRecord();         // writing
  const unsigned char* ReadRecord();  // reading; throws when the file ends
  const Bytes* in_ = nullptr;
  Bytes out_;
  int next_ = 0;  // records done
};

// Text as a fixed field holds it: Windows-1252, cut to `width` and blank padded; and back.
void PutFixedText(unsigned char* at, int width, const std::string& text);
std::string GetFixedText(const unsigned char* at, int width);
