#include "app/application.h"
#include "app/command_channel.h"

int main(int /*argumentCount*/, char** arguments) {
    return kestro::runApplication(arguments, std::string(kestro::CommandChannel::defaultPath));
}
