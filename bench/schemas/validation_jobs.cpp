// "validate" takes a tree that is there; "build+validate+delete" begins with the text.
#include <cstdio>
#include <map>
#include <utility>

#include "schema_documents.h"
#include "schema_jobs.h"
#include "validator.h"

namespace bench {
namespace {

using DocumentPointer = std::shared_ptr<const SchemaDocument>;

class ValidateTree final : public Work {
  public:
    explicit ValidateTree(std::unique_ptr<Validator> validator)
        : validator_(std::move(validator)) {}
    bool run() override { return validator_->validateTree(); }

  private:
    std::unique_ptr<Validator> validator_;
};

class ReadAndValidate final : public Work {
  public:
    ReadAndValidate(std::unique_ptr<Validator> validator, DocumentPointer document)
        : validator_(std::move(validator)), document_(std::move(document)) {}
    bool run() override { return validator_->readAndValidate(document_->text); }

  private:
    std::unique_ptr<Validator> validator_;
    DocumentPointer document_;
};

bool tellsApart(const ValidatorKind &kind, const SchemaDocument &document) {
    const std::unique_ptr<Validator> validator = kind.make(document.schema);
    const std::string invalid = document.invalid();
    return validator && validator->readAndValidate(document.text) &&
           !validator->readAndValidate(invalid) &&
           (!kind.tree || (validator->keepTree(document.text) && validator->validateTree() &&
                           validator->keepTree(invalid) && !validator->validateTree()));
}

// Whether it accepts the document and refuses the one with a mistake. Asked once for each.
bool takesPart(const ValidatorKind &kind, const SchemaDocument &document) {
    static std::map<std::pair<const ValidatorKind *, std::string>, bool> answers;
    const auto [answer, isNew] = answers.try_emplace({&kind, document.label});
    if (isNew) answer->second = tellsApart(kind, document);
    if (!answer->second) {
        std::fprintf(stderr, "%s: %s does not tell valid and invalid apart\n",
                     document.label.c_str(), kind.reader);
    }
    return answer->second;
}

std::unique_ptr<Work> prepareTree(const ValidatorKind &kind, const DocumentPointer &document) {
    if (!takesPart(kind, *document)) return nullptr;
    std::unique_ptr<Validator> validator = kind.make(document->schema);
    if (!validator || !validator->keepTree(document->text)) return nullptr;
    return std::make_unique<ValidateTree>(std::move(validator));
}

std::unique_ptr<Work> prepareReader(const ValidatorKind &kind, const DocumentPointer &document) {
    if (!takesPart(kind, *document)) return nullptr;
    std::unique_ptr<Validator> validator = kind.make(document->schema);
    if (!validator) return nullptr;
    return std::make_unique<ReadAndValidate>(std::move(validator), document);
}

void addJobs(Jobs &jobs, const ValidatorKind &kind, const DocumentPointer &document) {
    const std::size_t bytes = document->text.size();
    if (kind.tree) {
        jobs.push_back({"validate/" + document->label + "/" + kind.tree, bytes, Place::kHere,
                        [&kind, document] { return prepareTree(kind, document); }});
    }
    jobs.push_back({"build+validate+delete/" + document->label + "/" + kind.reader, bytes,
                    Place::kHere, [&kind, document] { return prepareReader(kind, document); }});
}

}  // namespace

void addValidationJobs(Jobs &jobs) {
    for (const DocumentPointer &document : makeSchemaDocuments()) {
        for (const ValidatorKind *kind : kValidatorKinds) addJobs(jobs, *kind, document);
    }
}

}  // namespace bench
