-- Bit-like flags hold 0 or 1: a statement or an assignment that writes any other non-zero
-- value (-1 for true, as most of the library writes booleans) leaves 1 behind, the way a
-- bit column does. A null stays null. The flags: Deleted of RXINFO, PATIENT and
-- INSURANCE, and the plan switches of INSURANCE.
--
-- One function serves the three tables; PL/pgSQL resolves a row's fields per table and
-- only when it reaches them, so the plan's switches are read for INSURANCE alone.

CREATE FUNCTION bit_like_flags() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
    IF NEW.Deleted <> 0 THEN NEW.Deleted := 1; END IF;
    IF TG_TABLE_NAME = 'insurance' THEN
        IF NEW.DaysSupply <> 0 THEN NEW.DaysSupply := 1; END IF;
        IF NEW.UandC <> 0 THEN NEW.UandC := 1; END IF;
        IF NEW.PatCopay <> 0 THEN NEW.PatCopay := 1; END IF;
        IF NEW.OnLine <> 0 THEN NEW.OnLine := 1; END IF;
        IF NEW.Internet <> 0 THEN NEW.Internet := 1; END IF;
    END IF;
    RETURN NEW;
END
$$;

CREATE TRIGGER RXINFO_bit_like BEFORE INSERT OR UPDATE ON RXINFO
FOR EACH ROW EXECUTE FUNCTION bit_like_flags();

CREATE TRIGGER PATIENT_bit_like BEFORE INSERT OR UPDATE ON PATIENT
FOR EACH ROW EXECUTE FUNCTION bit_like_flags();

CREATE TRIGGER INSURANCE_bit_like BEFORE INSERT OR UPDATE ON INSURANCE
FOR EACH ROW EXECUTE FUNCTION bit_like_flags();
