#include "apps/camerad/program/Program.h"

#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/api/Api.h"
#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/http/Server.h"
#include "apps/camerad/picture/PictureFeed.h"
#include "apps/camerad/program/Files.h"
#include "apps/camerad/program/LibraryMessages.h"
#include "apps/camerad/program/Password.h"
#include "apps/camerad/program/ServiceManager.h"
#include "platform/DeviceRoot.h"
#include "simcam/Camera.h"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <future>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <thread>

namespace camerad {

namespace {

const char kFolder[] = "/mnt/mtd/camerad";
const char kCertificate[] = "/mnt/mtd/camerad/certificate.pem";
const char kPrivateKey[] = "/mnt/mtd/camerad/key.pem";
constexpr std::size_t kTranscriptLimit = 1000;  // entries; the host keeps a log of its own
constexpr unsigned kEndSeconds = 5;             // until an end that hangs is no longer waited for

void log(const std::string& p_strLine) {
    std::cerr << "camerad: " + p_strLine + "\n";
}

// What cannot be ended in time is left; every file of the camera is whole at any time.
void onHung(int /*p_nSignal*/) {
    const char text[] = "camerad: a call of the camera does not return; ending without it\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, sizeof(text) - 1);
    _exit(kHung);
}

// SIGTERM, SIGINT and SIGHUP reach no thread but one that waits for them, from the start on. The first of them sets the time
// in which the process has to end, wherever it is.
class Signals {
public:
    Signals() {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGALRM, onHung);
        sigset_t ending{};
        sigemptyset(&ending);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP, kNoMore}) {
            sigaddset(&ending, signal);
        }
        pthread_sigmask(SIG_BLOCK, &ending, nullptr);
        m_objThread = std::thread([this, ending] { await(ending); });
    }
    ~Signals() {
        pthread_kill(m_objThread.native_handle(), kNoMore);
        m_objThread.join();
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    // Blocks until one has come.
    void wait() { m_objCame.get_future().wait(); }

private:
    static constexpr int kNoMore = SIGUSR1;

    static const char* nameOf(int p_nSignal) {
        return SIGINT == p_nSignal ? "interrupted" : SIGHUP == p_nSignal ? "hung up" : "terminated";
    }

    // Only the first one ends; those after it change nothing any more.
    void await(const sigset_t& p_stEnding) {
        bool came = false;
        for (int signal = 0; kNoMore != signal;) {
            if (0 != sigwait(&p_stEnding, &signal) || kNoMore == signal || came) {
                continue;
            }
            came = true;
            alarm(kEndSeconds);
            log(std::string("ending: ") + nameOf(signal));
            m_objCame.set_value();
        }
    }

    std::promise<void> m_objCame;
    std::thread m_objThread;
};

// Lines go to the host for as long as the object lives.
class MessagesToHost {
public:
    MessagesToHost(LibraryMessages& p_objMessages, CameraHost& p_objHost) : m_objMessages(p_objMessages) {
        m_objMessages.setTaker([&p_objHost](const std::string& p_strLine) { p_objHost.addMessage(p_strLine); });
    }
    ~MessagesToHost() { m_objMessages.setTaker(nullptr); }
    MessagesToHost(const MessagesToHost&) = delete;
    MessagesToHost& operator=(const MessagesToHost&) = delete;

private:
    LibraryMessages& m_objMessages;
};

std::vector<std::string> namesOf(const ProgramOptions& p_stOptions) {
    std::vector<std::string> names = p_stOptions.vecHosts;
    std::array<char, 256> name{};
    if (0 == gethostname(name.data(), name.size() - 1)) {
        names.emplace_back(name.data());
        names.push_back(names.back() + ".local");
    }
    return names;
}

// Of 40 bits, so that counting on from there stays a number of JSON.
std::uint64_t anyNumber() {
    constexpr unsigned kHighBits = 8;
    constexpr unsigned kWord = 32;
    std::random_device random;
    return (static_cast<std::uint64_t>(random()) << kHighBits) ^ (random() >> (kWord - kHighBits));
}

int serve(const ProgramOptions& p_stOptions) {
    Signals signals;
    LibraryMessages messages;

    AccessSettings accessSettings;
    accessSettings.bBasicAllowed = p_stOptions.usesTls() || !p_stOptions.bInsecure;
    const std::unique_ptr<AccessControl> access = AccessControl::open(accessSettings);
    // At once: when something else fails later, nobody could ever learn it.
    if (const std::optional<std::string> password = access->firstPassword()) {
        if (!messages.say("camerad: first start: sign in as admin with the password " + *password + "\n")) {
            log("the first password could not be written to standard output; set one with --set-password admin");
        }
    }
    ServerSettings settings;
    settings.strAddress = p_stOptions.strAddress;
    settings.nPort = p_stOptions.nPort;
    settings.vecHosts = namesOf(p_stOptions);
    settings.fnLog = log;
    if (p_stOptions.usesTls()) {
        const std::string fingerprint = ensureCertificate(kCertificate, kPrivateKey, p_stOptions.strAddress);
        settings.strCertificate = platform::devicePath(kCertificate);
        settings.strPrivateKey = platform::devicePath(kPrivateKey);
        messages.say("camerad: SHA-256 fingerprint of the certificate: " + fingerprint + "\n");
    }

    simcam::Camera camera({simcam::kMaxChannels, kTranscriptLimit});
    EventHub::Limits eventLimits;
    eventLimits.nBefore = anyNumber();
    EventHub events(eventLimits);
    const std::unique_ptr<CameraHost> host = CameraHost::start(camera, events, {});
    const MessagesToHost messagesToHost(messages, *host);
    std::map<int, std::unique_ptr<PictureFeed>> feeds;
    for (const int channel : host->channels()) {
        feeds[channel] = PictureFeed::create(camera, channel, host->channel(channel).isThermal(), {});
    }

    std::unique_ptr<Server> server;
    Api api{*host, events, *access, feeds, [&server] { return server->counters(); }, programVersion()};
    Router router;
    addRoutes(router, api);
    addPage(router);
    server = Server::create(settings, router, *access);
    server->start();
    {
        const PortFile portFile(p_stOptions.strPortFile, server->port());
        messages.say("camerad: " + server->url() + "\n");
        log("serving at " + server->url());
        const char* const manager = std::getenv("NOTIFY_SOCKET");
        tellServiceManager(manager, "READY=1");
        signals.wait();
        tellServiceManager(manager, "STOPPING=1");
    }

    // A call that waits on the camera's clock returns, and its request with it.
    host->endWaits();
    // Whoever waits for an event or a picture stops waiting, so that the server finds its threads free.
    events.close();
    for (const auto& [channel, feed] : feeds) {
        feed->close();
    }
    server->stop();
    return kEnded;
}

}  // namespace

int runCamera(const ProgramOptions& p_stOptions) {
    platform::setDeviceRoot(p_stOptions.strRoot);
    const RootLock lock(platform::devicePath(kFolder));
    if (!p_stOptions.strSetPassword.empty()) {
        setPassword(p_stOptions.strSetPassword, readPassword(STDIN_FILENO));
        log("the password of " + p_stOptions.strSetPassword + " is stored");
        return kEnded;
    }
    const int status = serve(p_stOptions);
    alarm(0);
    log("ended");
    return status;
}

}  // namespace camerad
