#ifndef TESTS_SUPPORT_MQTT_BROKER_H
#define TESTS_SUPPORT_MQTT_BROKER_H

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QThread>

#include <memory>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

/**
 * A mosquitto broker of a test's own, with the installation's configuration
 * from examples/mqtt (password file, ACL, optionally the TLS listener) on
 * free loopback ports. Users: server, driver, client. TLS certificates (a CA,
 * the broker's for 127.0.0.1, one for the clients) are made by openssl.
 * Before its first start a broker can take other users and ACL (installations
 * sharing it), let a bridge in, or be bridged to another broker.
 */
class mqtt_broker_t
{
public:
    mqtt_broker_t(QString const& folder, bool tls)
        : dir(folder)
        , useTls(tls)
    {
    }
    ~mqtt_broker_t() { stop(); }
    mqtt_broker_t(mqtt_broker_t const&) = delete;
    mqtt_broker_t& operator=(mqtt_broker_t const&) = delete;

    /// Writes the configuration (the first time) and starts the broker, on
    /// the same ports each time; false with a reason.
    bool start(QString& why)
    {
        if (plainPort == 0 && !prepare(why))
            return false;
        broker.setWorkingDirectory(dir.path());
        broker.setProcessChannelMode(QProcess::MergedChannels);
        broker.setStandardOutputFile(dir.filePath("broker.log"), QIODevice::Append);
        broker.start(executable("mosquitto"), {"-c", "mosquitto.conf"});
        if (!broker.waitForStarted(5000)) {
            why = "mosquitto does not start";
            return false;
        }
        for (int round = 0; round < 100; ++round) {
            if (accepts(plainPort) && (!useTls || accepts(tlsPort)))
                return true;
            if (broker.state() != QProcess::Running)
                break;
            QThread::msleep(50);
        }
        why = "mosquitto does not listen: " + log();
        return false;
    }

    void stop()
    {
        if (broker.state() == QProcess::NotRunning)
            return;
        broker.terminate();
        if (!broker.waitForFinished(5000)) {
            broker.kill();
            broker.waitForFinished(5000);
        }
    }

    /// Before the first start: these users and this ACL instead of the installation's.
    void setAccess(QStringList const& names, QByteArray const& acl)
    {
        users = names;
        customAcl = acl;
    }

    /// Before the first start: lets a bridge in, with the user "bridge" and
    /// examples/mqtt/bridge.acl added to the ACL.
    void acceptBridge() { bridgeUser = true; }

    /// Before the first start: bridged to main (started, and accepting a
    /// bridge) by examples/mqtt/bridge.conf, as it stands but for the address
    /// and the password.
    void bridgeTo(mqtt_broker_t const& main) { bridgedPort = main.port(); }

    qint64 pid() const { return broker.processId(); }

    /// The port the hosts use: the TLS one when there is TLS.
    int port() const { return useTls ? tlsPort : plainPort; }

    /// The options of dbhost for a user of this broker.
    QStringList hostArguments(QString const& user) const
    {
        QStringList arguments{"--mqtt", QString("127.0.0.1:%1").arg(port()), "--mqtt-user", user,
                              "--mqtt-password-file", dir.filePath(user + ".password")};
        if (useTls)
            arguments << "--mqtt-cafile" << dir.filePath("ca.crt") << "--mqtt-cert" << dir.filePath("client.crt")
                      << "--mqtt-key" << dir.filePath("client.key");
        return arguments;
    }

    /// Publishes one message at QoS 1 with MQTT 5 as a user, by mosquitto_pub;
    /// extra takes more of its options (-D for properties, -i for the id).
    bool publish(QString const& user, QString const& topic, QByteArray const& body, QStringList const& extra = {})
    {
        QProcess tool;
        tool.start(executable("mosquitto_pub"),
                   toolArguments(user) + QStringList{"-t", topic, "-m", QString::fromUtf8(body)} + extra);
        return tool.waitForFinished(10000) && tool.exitStatus() == QProcess::NormalExit;
    }

    /// A mosquitto_sub, ended when it goes.
    using subscriber_t = std::unique_ptr<QProcess, void (*)(QProcess*)>;

    /// mosquitto_sub as a user on a topic filter, printing "topic body" lines.
    subscriber_t subscribe(QString const& user, QString const& filter) const
    {
        subscriber_t tool(new QProcess, [](QProcess* process) {
            process->kill();
            process->waitForFinished(5000);
            delete process;
        });
        tool->start(executable("mosquitto_sub"), toolArguments(user) + QStringList{"-t", filter, "-v"});
        tool->waitForStarted(5000);
        return tool;
    }

    QString log() const { return QString::fromUtf8(readAll(dir.filePath("broker.log"))); }

    static QString executable(QString const& name)
    {
        QString const found = QStandardPaths::findExecutable(name);
        return found.isEmpty() ? QStandardPaths::findExecutable(name, {"/usr/sbin", "/sbin"}) : found;
    }

private:
    static QString password(QString const& user) { return user + "-secret"; }

    /// The options of mosquitto_pub and mosquitto_sub for a user, at QoS 1 with MQTT 5.
    QStringList toolArguments(QString const& user) const
    {
        QStringList arguments{"-h", "127.0.0.1", "-p", QString::number(port()), "-V", "5", "-q", "1",
                              "-u", user, "-P", password(user)};
        if (useTls)
            arguments << "--cafile" << dir.filePath("ca.crt") << "--cert" << dir.filePath("client.crt") << "--key"
                      << dir.filePath("client.key");
        return arguments;
    }

    static int freePort()
    {
        int const fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        int port = 0;
        if (::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0
            && ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
            port = ntohs(address.sin_port);
        ::close(fd);
        return port;
    }

    static bool accepts(int port)
    {
        int const fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(quint16(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bool const ok = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::close(fd);
        return ok;
    }

    bool run(QString const& program, QStringList const& arguments) const
    {
        QProcess tool;
        tool.setWorkingDirectory(dir.path());
        tool.start(executable(program), arguments);
        return tool.waitForFinished(30000) && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
    }

    static QByteArray readAll(QString const& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool write(QString const& name, QByteArray const& content) const
    {
        QFile file(dir.filePath(name));
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) == content.size();
    }

    /// A key and a certificate signed by the test's CA.
    bool sign(QString const& name, QString const& subject, QByteArray const& extensions) const
    {
        QStringList const key{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"};
        return write(name + ".ext", extensions)
               && run("openssl", QStringList{"req"} + key
                                     + QStringList{"-keyout", name + ".key", "-out", name + ".csr", "-subj", subject})
               && run("openssl", {"x509", "-req", "-in", name + ".csr", "-CA", "ca.crt", "-CAkey", "ca.key",
                                  "-CAcreateserial", "-days", "2", "-extfile", name + ".ext", "-out", name + ".crt"});
    }

    bool makeCertificates() const
    {
        return run("openssl", {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                               "-nodes", "-keyout", "ca.key", "-out", "ca.crt", "-days", "2", "-subj",
                               "/CN=test installation CA"})
               && sign("broker", "/CN=127.0.0.1", "subjectAltName=IP:127.0.0.1\n")
               && sign("client", "/CN=dbhost", "extendedKeyUsage=clientAuth\n");
    }

    bool prepare(QString& why)
    {
        QString const examples = MQTT_EXAMPLES;
        QByteArray config = readAll(examples + "/mosquitto.conf");
        QByteArray acl = customAcl.isNull() ? readAll(examples + "/acl") : customAcl;
        if (config.isEmpty() || acl.isEmpty()) {
            why = "no broker configuration in " + examples;
            return false;
        }
        plainPort = freePort();
        config.replace("listener 1883 ", "listener " + QByteArray::number(plainPort) + ' ');
        if (useTls) {
            tlsPort = freePort();
            if (!makeCertificates()) {
                why = "openssl could not make the certificates";
                return false;
            }
            QByteArray const listener = "listener " + QByteArray::number(tlsPort) + ' ';
            config += readAll(examples + "/tls.conf").replace("listener 8883 ", listener);
        }
        // Started as root, mosquitto becomes the user "mosquitto", who can't
        // read a test's private folder.
        if (::geteuid() == 0)
            config += "user root\n";
        QStringList names = users;
        if (bridgeUser) {
            acl += '\n' + readAll(examples + "/bridge.acl");
            names << "bridge";
        }
        // Last: what follows a bridge's "connection" line is the bridge's.
        if (bridgedPort != 0) {
            QString bridge = QString::fromUtf8(readAll(examples + "/bridge.conf"));
            bridge.replace(QRegularExpression("^address .*$", QRegularExpression::MultilineOption),
                           QStringLiteral("address 127.0.0.1:%1").arg(bridgedPort));
            bridge.replace(QRegularExpression("^remote_password .*$", QRegularExpression::MultilineOption),
                           "remote_password " + password("bridge"));
            config += '\n' + bridge.toUtf8();
        }
        if (!write("mosquitto.conf", config) || !write("acl", acl) || !write("passwd", QByteArray())) {
            why = "cannot write the broker's files";
            return false;
        }
        for (QString const& user : std::as_const(names)) {
            if (!run("mosquitto_passwd", {"-b", "passwd", user, password(user)})
                || !write(user + ".password", password(user).toUtf8() + '\n')) {
                why = "mosquitto_passwd failed";
                return false;
            }
        }
        return true;
    }

    QDir dir;
    QStringList users{"server", "driver", "client"};
    QByteArray customAcl;
    bool bridgeUser = false;
    int bridgedPort = 0;
    bool useTls = false;
    int plainPort = 0;
    int tlsPort = 0;
    QProcess broker;
};

/// Two brokers of one site joined as examples/mqtt/bridge.conf joins them:
/// "main" (where the server is) and "far", each in its folder under root.
struct bridged_brokers_t
{
    explicit bridged_brokers_t(QString const& root)
        : main((QDir(root).mkpath(QStringLiteral("main")), root + QStringLiteral("/main")), false)
        , far((QDir(root).mkpath(QStringLiteral("far")), root + QStringLiteral("/far")), false)
    {
        main.acceptBridge();
    }
    /// The main broker first: its port is known once it runs, and the far
    /// one's bridge connects to it at once.
    bool start(QString& why)
    {
        if (!main.start(why))
            return false;
        far.bridgeTo(main);
        return far.start(why);
    }

    mqtt_broker_t main;
    mqtt_broker_t far;
};

#endif // TESTS_SUPPORT_MQTT_BROKER_H
