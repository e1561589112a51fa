#pragma once

#include "sandbox/Router.hpp"

#include <memory>
#include <string>

namespace sandbox {

/// HTTP in front of a router. The only file that sees the HTTP library is this one's source.
class Server {
public:
    explicit Server(const Router& router);
    ~Server();

    /// Connections wait from here on, and are answered once `run` is called.
    /// @param port 0 lets the system choose.
    /// @return the port, or -1 if the address cannot be had.
    int bind(const std::string& host, int port);

    /// Serves until `stop`; blocks.
    void run();

    /// Lets requests that have arrived be answered, ends idle connections, and returns when `run` is through. From any
    /// thread but `run`'s, at any time after `bind`.
    void stop();

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace sandbox
