// generated_schema.h - a schema with as many declarations as one likes, in a file.
#pragma once

#include <string>

namespace bench {

// The file is there as long as this is. Declarations are elements, attributes and types.
class GeneratedSchema {
  public:
    explicit GeneratedSchema(int declarations);
    GeneratedSchema(const GeneratedSchema &) = delete;
    GeneratedSchema &operator=(const GeneratedSchema &) = delete;
    ~GeneratedSchema();

    bool ready() const { return ready_; }
    const std::string &file() const { return file_; }

  private:
    std::string file_;
    bool ready_;
};

}  // namespace bench
