// Stands between SDL and the sound server's client library. SDL copies the names of the default
// output and input without a look, in a thread that watches the server, and so falls over a server
// whose last output has just vanished: those names are null then. Here they become empty.
//
// SDL finds this function ahead of the library's own, for this module is what brings both along.
#include <pulse/introspect.h>
#include <pulse/operation.h>

#include <memory>

#include <dlfcn.h>

namespace {

struct Question {
    pa_server_info_cb_t answer;
    void* data;
};

void fillIn(pa_context* context, const pa_server_info* info, void* data) {
    const auto* question = static_cast<const Question*>(data);
    if (!info) {
        question->answer(context, nullptr, question->data);
        return;
    }
    pa_server_info complete = *info;
    for (const char** name : {&complete.default_sink_name, &complete.default_source_name}) {
        if (!*name)
            *name = "";
    }
    question->answer(context, &complete, question->data);
}

void forgetWhenOver(pa_operation* operation, void* data) {
    if (pa_operation_get_state(operation) != PA_OPERATION_RUNNING)
        delete static_cast<Question*>(data);
}

} // namespace

extern "C" [[gnu::visibility("default")]] pa_operation*
pa_context_get_server_info(pa_context* context, pa_server_info_cb_t answer, void* data) {
    static const auto ask = reinterpret_cast<decltype(&pa_context_get_server_info)>(
        ::dlsym(RTLD_NEXT, "pa_context_get_server_info"));
    auto question = std::make_unique<Question>(Question{answer, data});
    pa_operation* operation = ask(context, &fillIn, question.get());
    if (operation)
        pa_operation_set_state_callback(operation, &forgetWhenOver, question.release());
    return operation;
}
