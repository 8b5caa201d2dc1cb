-- Bit-like flags hold 0 or 1: a statement or an assignment that writes any other non-zero
-- value (-1 for true, as most of the library writes booleans) leaves 1 behind, the way a
-- bit column does. A null stays null. The flags: Deleted of RXINFO, PATIENT and
-- INSURANCE, and the plan switches of INSURANCE.
--
-- The update triggers do the work. An added row passes through them by a no-op update of
-- its flag, so that the rule is written once per table.

CREATE TRIGGER RXINFO_bit_like AFTER UPDATE OF Deleted ON RXINFO
WHEN NEW.Deleted NOT IN (0, 1)
BEGIN
    UPDATE RXINFO SET Deleted = 1 WHERE rowid = NEW.rowid;
END;

CREATE TRIGGER PATIENT_bit_like AFTER UPDATE OF Deleted ON PATIENT
WHEN NEW.Deleted NOT IN (0, 1)
BEGIN
    UPDATE PATIENT SET Deleted = 1 WHERE rowid = NEW.rowid;
END;

CREATE TRIGGER INSURANCE_bit_like AFTER UPDATE OF Deleted, DaysSupply, UandC, PatCopay, OnLine, Internet ON INSURANCE
WHEN NEW.Deleted NOT IN (0, 1) OR NEW.DaysSupply NOT IN (0, 1) OR NEW.UandC NOT IN (0, 1)
  OR NEW.PatCopay NOT IN (0, 1) OR NEW.OnLine NOT IN (0, 1) OR NEW.Internet NOT IN (0, 1)
BEGIN
    UPDATE INSURANCE SET
        Deleted = CASE WHEN Deleted <> 0 THEN 1 ELSE Deleted END,
        DaysSupply = CASE WHEN DaysSupply <> 0 THEN 1 ELSE DaysSupply END,
        UandC = CASE WHEN UandC <> 0 THEN 1 ELSE UandC END,
        PatCopay = CASE WHEN PatCopay <> 0 THEN 1 ELSE PatCopay END,
        OnLine = CASE WHEN OnLine <> 0 THEN 1 ELSE OnLine END,
        Internet = CASE WHEN Internet <> 0 THEN 1 ELSE Internet END
    WHERE rowid = NEW.rowid;
END;

CREATE TRIGGER RXINFO_bit_like_added AFTER INSERT ON RXINFO
BEGIN
    UPDATE RXINFO SET Deleted = Deleted WHERE rowid = NEW.rowid;
END;

CREATE TRIGGER PATIENT_bit_like_added AFTER INSERT ON PATIENT
BEGIN
    UPDATE PATIENT SET Deleted = Deleted WHERE rowid = NEW.rowid;
END;

CREATE TRIGGER INSURANCE_bit_like_added AFTER INSERT ON INSURANCE
BEGIN
    UPDATE INSURANCE SET Deleted = Deleted WHERE rowid = NEW.rowid;
END;
