#include "app/application.h"
#include "app/command_channel.h"
#include "app/standard_streams.h"

int main(int /*argumentCount*/, char** arguments) {
    kestro::standard_streams::silence();
    return kestro::runApplication(arguments, std::string(kestro::CommandChannel::defaultPath));
}
