#pragma once
/// Ctrl-C and a request to end, for commands that have something to finish or to put back.

/// Holds both signals back for the life of the object. Made before the library, so that its
/// threads hold them back too.
class Interrupts {
public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

    /// Whether one came. The next one ends the process at once, for those who don't want to
    /// wait.
    bool Came();
    /// Raises the end of the command if one came.
    void Check();

private:
    int m_signals;
    bool m_came = false;
};
