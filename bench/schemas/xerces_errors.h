// xerces_errors.h - Xerces-C made ready, and an account of the errors that it finds.
#pragma once

#include <xercesc/sax/ErrorHandler.hpp>

namespace bench {

// Once for the whole program, and never given up.
void startXerces();

class XercesErrors final : public xercesc::ErrorHandler {
  public:
    bool none() const { return !any_; }

    void warning(const xercesc::SAXParseException &) override {}
    void error(const xercesc::SAXParseException &) override { any_ = true; }
    void fatalError(const xercesc::SAXParseException &) override { any_ = true; }
    void resetErrors() override { any_ = false; }

  private:
    bool any_ = false;
};

}  // namespace bench
